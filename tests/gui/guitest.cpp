#include "gui/guitest.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include <gtest/gtest.h>

#include "gui/Form1.h"
#include "gui/editorapp.h"
#include "gui/script.h"
#include "gui/usersettings.h"
#include "session.h"

namespace kvtest {

QApplication& GuiApp() {
  static int argc = 1;
  static char name[] = "korvane_gui_tests";
  static char* argv[] = {name, nullptr};
  static QApplication* app = [] {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);  // a real screen only when one is asked for
    return new kv::gui::EditorApplication(argc, argv);
  }();
  return *app;
}

void Settle() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();
}

EditorWindow::EditorWindow(const MiniApp& mini, int w, int h, const std::string& settings) {
  GuiApp();
  kv::gui::Script().active = true;
  kv::gui::Script().answers.clear();
  MakeMiniApp(app.path(), mini);
  kv::gui::SetUserSettingsFile(QString::fromStdString(settings.empty() ? home.path() + "/editor.ini" : settings));
  f = std::make_unique<kv::gui::Form1>(app.path());
  f->SetScreenSize(w, h);
  EXPECT_TRUE(f->Form_Load());
  Settle();  // the forms' key previews come into place
}

EditorWindow::~EditorWindow() = default;

kv::Session& EditorWindow::s() { return f->session(); }

int EditorWindow::Run(const std::string& script, std::string* out, bool withBoxes) {
  return RunScriptText(*f, script, out, withBoxes);
}

int RunScriptText(kv::gui::Form1& form, const std::string& script, std::string* out, bool withBoxes) {
  std::istringstream in(script);
  std::FILE* o = std::tmpfile();
  std::FILE* e = std::tmpfile();
  if (withBoxes) testing::internal::CaptureStdout();
  const int rc = kv::gui::RunScript(form, in, o, e);
  const std::string boxes = withBoxes ? testing::internal::GetCapturedStdout() : std::string();
  auto slurp = [](std::FILE* fp) {
    std::string t;
    std::rewind(fp);
    for (int c; (c = std::fgetc(fp)) != EOF;) t += static_cast<char>(c);
    std::fclose(fp);
    return t;
  };
  const std::string os = slurp(o), es = slurp(e);
  if (out) *out = os + es + boxes;
  return rc;
}

}  // namespace kvtest
