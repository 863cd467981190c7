// korvane-mapedit: the map editor.
#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <filesystem>

#include "document/fileflow.h"
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
  parser.addPositionalArgument(QStringLiteral("map"), QStringLiteral("A map to open once the editor has started."),
                               QStringLiteral("[MAP]"));
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
  // A map named on the command line opens as the dialog's Load opens it; one
  // that cannot be read says why and leaves the blank first map.
  if (const QStringList maps = parser.positionalArguments(); !maps.isEmpty()) {
    std::error_code ec;
    const std::filesystem::path map = std::filesystem::absolute(maps.first().toStdString(), ec);
    kv::OpenMapFile(form.session(), map.parent_path().string(), map.filename().string());
    form.SyncControls();
  }
  form.show();
  return QApplication::exec();
}
