// korvane-mapedit: the map editor.
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QMessageBox>

#include "cli/commands.h"
#include "editing/fileflow.h"
#include "gui/Form1.h"
#include "gui/editorapp.h"
#include "gui/keeper.h"
#include "platform/appfolder.h"

#ifndef KV_VERSION
#error "KV_VERSION comes from cmake/Version.cmake, which gives it to the two programs' targets"
#endif

namespace {

const char* kUsage =
    "usage: korvane-mapedit [--app DIR] [MAP]\n"
    "       korvane-mapedit --help | --version\n"
    "The Korvane map editor.\n"
    "  --app DIR   the program folder (tile sheet, tables, nation sets); without it the\n"
    "              per-user folder, filled from the installed default data on first run\n"
    "  MAP         a map to open once the editor has started\n"
    "  -h, --help  this text\n"
    "  --version   the version\n"
    "The window system's options (-platform NAME, -style NAME, ...) are taken as well.\n";
const char* kTryHelp = "Try 'korvane-mapedit --help' for more information.\n";

}  // namespace

int main(int argc, char** argv) {
  // korvane-map's script command runs here, where the forms are.
  if (argc >= 2 && !std::strcmp(argv[1], kv::cli::kScriptEntry)) return kv::cli::ScriptEntry(argc - 2, argv + 2);
  // Help and version are answered before the window system starts, so that
  // they work without a display.
  for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
    if (!std::strcmp(argv[i], "--help") || !std::strcmp(argv[i], "-h")) {
      std::fputs(kUsage, stdout);
      return 0;
    }
    if (!std::strcmp(argv[i], "--version")) {
      std::printf("korvane-mapedit %s\n", KV_VERSION);
      return 0;
    }
  }
  kv::gui::EditorApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("korvane-mapedit"));
  QApplication::setApplicationVersion(QStringLiteral(KV_VERSION));
  // The launcher and icon of an installation (the window system takes the
  // application's icon from there; without one the window has none).
  QGuiApplication::setDesktopFileName(QStringLiteral("org.korvane.MapEditor"));
  QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("org.korvane.MapEditor")));
  QCommandLineParser parser;
  QCommandLineOption appOpt(QStringLiteral("app"), QString(), QStringLiteral("DIR"));
  parser.addOption(appOpt);
  if (!parser.parse(QCoreApplication::arguments()) || parser.positionalArguments().size() > 1) {
    const QString why =
        parser.positionalArguments().size() > 1 ? QStringLiteral("one map at a time") : parser.errorText();
    std::fprintf(stderr, "korvane-mapedit: %s\n%s", why.toLocal8Bit().constData(), kTryHelp);
    return 2;
  }

  std::string err;
  std::string dir = kv::ResolveAppFolder(parser.value(appOpt).toStdString(),
                                         QCoreApplication::applicationDirPath().toStdString(), &err);
  if (dir.empty()) {
    std::fprintf(stderr, "korvane-mapedit: %s\n", err.c_str());
    kv::gui::MessageBox(nullptr, err, kv::vbOKOnly);
    return 1;
  }
  kv::gui::Form1 form(dir);
  if (!form.Form_Load()) return 1;
  form.UseEditorSettings(kv::DefaultDataFolder(QCoreApplication::applicationDirPath().toStdString()));
  form.show();
  // Unsaved work of an editor that died is offered first; a map named on the
  // command line opens unless such work was recovered.
  const bool recovered = form.keeper().OfferRecovery();
  // A map named on the command line opens as the dialog's Load opens it; one
  // that cannot be read says why and leaves the blank first map.
  if (const QStringList maps = parser.positionalArguments(); !maps.isEmpty() && !recovered) {
    std::error_code ec;
    const std::filesystem::path map = std::filesystem::absolute(maps.first().toStdString(), ec);
    kv::OpenMapFile(form.session(), map.parent_path().string(), map.filename().string());
    form.SyncControls();
  }
  return QApplication::exec();
}
