// korvane-mapedit: the map editor.
#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>

#include "gui/Form1.h"
#include "platform/appfolder.h"

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("korvane-mapedit"));
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Korvane map editor"));
  parser.addHelpOption();
  QCommandLineOption appOpt(QStringLiteral("app"), QStringLiteral("Program folder (tile sheet, tables, nation sets)."),
                            QStringLiteral("DIR"));
  parser.addOption(appOpt);
  parser.process(app);

  std::string err;
  std::string dir = kv::ResolveAppFolder(parser.value(appOpt).toStdString(),
                                         QCoreApplication::applicationDirPath().toStdString(), &err);
  if (dir.empty()) {
    kv::gui::MessageBox(nullptr, err, kv::vbOKOnly);
    return 1;
  }
  kv::gui::Form1 form(dir);
  if (!form.Form_Load()) return 1;
  form.show();
  return QApplication::exec();
}
