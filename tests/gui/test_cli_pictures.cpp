// korvane-map render and jumpmap: the PNG files of the tool's own writer hold
// the very pixels, at the very size, that Qt's image writer gave for the same
// pictures (both read back by Qt's reader); the options are checked; BMP keeps
// its 16-bit sides while PNG goes past them; the tool loads no GUI library,
// and its scripts run in the editor's binary.
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/wait.h>

#include <QImage>
#include <gtest/gtest.h>

#include "document/mapfile.h"
#include "editing/fileflow.h"
#include "editing/startup.h"
#include "jumpmap/jumpmap.h"
#include "jumpmap/mapimage.h"
#include "platform/fileio.h"
#include "platform/ui.h"
#include "session.h"
#include "testutil.h"

namespace fs = std::filesystem;

namespace {

std::string Quote(const std::string& s) { return "'" + s + "'"; }

std::string Text(const std::string& path) {
  auto b = kvtest::ReadBytes(path);
  return std::string(b.begin(), b.end());
}

// A private copy of the generated program folder (a session writes into its
// folder) and a map of cols x rows hexes with every tile of the sheet on it.
struct PictureSet {
  kvtest::TempDir app, work;
  std::string map;
  PictureSet(int cols, int rows) {
    fs::copy(KV_DEFAULT_DATA_DIR, app.path(), fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    kv::Document d;
    d.MapMaxX = static_cast<int16_t>(cols - 1);
    d.MapMaxY = static_cast<int16_t>(rows - 1);
    d.AllocateAll();
    d.NationSet = "default";
    for (int x = 0; x < cols; ++x)
      for (int y = 0; y < rows; ++y) {
        d.HexTile(x, y) = static_cast<int16_t>((x * 7 + y * 13) % 160);
        d.HexElev(x, y) = 127;
      }
    map = work / "t.map";
    kv::VectorSink out;
    kv::WriteMapFile(d, out);
    kvtest::WriteBytes(map, out.bytes);
  }
  int Run(const std::string& args) {
    const std::string cmd = std::string(KV_BIN_DIR) + "/korvane-map --app " + Quote(app.path()) + " " + args + " >" +
                            Quote(work / "out.txt") + " 2>" + Quote(work / "err.txt");
    const int rc = std::system(cmd.c_str());
    return WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
  }
  std::string Err() { return Text(work / "err.txt"); }
};

// What the tool wrote before it had a writer of its own.
void SaveThroughQt(const kv::Bitmap& b, const std::string& path) {
  QImage img(reinterpret_cast<const uchar*>(b.Pixels().data()), b.Width(), b.Height(), b.Width() * 4,
             QImage::Format_RGB32);
  ASSERT_TRUE(img.save(QString::fromStdString(path), "PNG"));
}

// Both files read by Qt: the same size and the same pixels.
void ExpectSamePicture(const std::string& a, const std::string& b) {
  QImage ia(QString::fromStdString(a)), ib(QString::fromStdString(b));
  ASSERT_FALSE(ia.isNull()) << a;
  ASSERT_FALSE(ib.isNull()) << b;
  EXPECT_EQ(ia.size(), ib.size());
  ia = ia.convertToFormat(QImage::Format_RGB32);
  ib = ib.convertToFormat(QImage::Format_RGB32);
  EXPECT_TRUE(ia == ib) << a << " and " << b << " differ";
}

}  // namespace

TEST(CliPictures, PngHoldsThePixelsQtWroteForTheSectionAndTheJumpMap) {
  PictureSet p(40, 30);
  kv::HeadlessUi ui;
  auto s = std::make_unique<kv::Session>(p.app.path(), &ui);
  ASSERT_TRUE(kv::StartSession(*s));
  ASSERT_TRUE(kv::OpenMapFile(*s, p.work.path(), "t.map"));
  kv::Bitmap section;
  std::string err;
  ASSERT_TRUE(kv::RenderMapImage(*s, 3, 2, 25, 20, section, &err)) << err;
  SaveThroughQt(section, p.work / "qt.png");
  kv::LoadForm5(*s);
  kv::DrawStrategicMap(*s);
  SaveThroughQt(s->jump.Picture2, p.work / "qt-jump.png");
  s.reset();

  for (const char* level : {"fast", "default", "best"}) {
    ASSERT_EQ(p.Run("render " + Quote(p.map) + " " + Quote(p.work / "ours.png") +
                    " --x 3 --y 2 --w 25 --h 20 --compression " + level),
              0)
        << p.Err();
    ExpectSamePicture(p.work / "qt.png", p.work / "ours.png");
  }
  EXPECT_EQ(Text(p.work / "out.txt"), p.work / "ours.png: 1125 x 1000 pixels\n");
  EXPECT_EQ(p.Err(), "");  // no progress line for a picture done within a second

  ASSERT_EQ(p.Run("jumpmap " + Quote(p.map) + " " + Quote(p.work / "jump.png") + " --quiet"), 0) << p.Err();
  ExpectSamePicture(p.work / "qt-jump.png", p.work / "jump.png");

  // BMP: the same pixels as the PNG.
  ASSERT_EQ(p.Run("render " + Quote(p.map) + " " + Quote(p.work / "ours.bmp") + " --x 3 --y 2 --w 25 --h 20"), 0)
      << p.Err();
  ExpectSamePicture(p.work / "ours.bmp", p.work / "ours.png");
}

TEST(CliPictures, OptionsAreCheckedAndOnlyBmpKeepsTheSixteenBitSides) {
  PictureSet p(802, 4);
  EXPECT_EQ(p.Run("render " + Quote(p.map) + " " + Quote(p.work / "a.png") + " --compression fastest"), 2);
  EXPECT_NE(p.Err().find("--compression takes fast, default or best"), std::string::npos) << p.Err();
  EXPECT_EQ(p.Run("render " + Quote(p.map) + " " + Quote(p.work / "a.png") + " --threads 0"), 2);
  EXPECT_EQ(p.Run("render " + Quote(p.map) + " " + Quote(p.work / "a.png") + " --x"), 2);
  EXPECT_EQ(p.Run("render " + Quote(p.map) + " " + Quote(p.work / "a.png") + " --z 3"), 2);
  EXPECT_NE(p.Err().find("bad option --z"), std::string::npos) << p.Err();
  EXPECT_EQ(p.Run("jumpmap " + Quote(p.map) + " " + Quote(p.work / "a.png") + " --x 3"), 2);
  EXPECT_FALSE(kv::FileExists(p.work / "a.png"));

  // 800 columns: 36000 pixels wide.
  EXPECT_EQ(p.Run("render " + Quote(p.map) + " " + Quote(p.work / "wide.bmp") + " --w 800 --h 2"), 1);
  EXPECT_NE(p.Err().find("is too large (at most 32767 a side)"), std::string::npos) << p.Err();
  EXPECT_FALSE(kv::FileExists(p.work / "wide.bmp"));
  ASSERT_EQ(p.Run("render " + Quote(p.map) + " " + Quote(p.work / "wide.png") + " --w 800 --h 2 --threads 2"), 0)
      << p.Err();
  QImage wide(QString::fromStdString(p.work / "wide.png"));
  EXPECT_EQ(wide.width(), 36000);
  EXPECT_EQ(wide.height(), 100);
  // Written under a temporary name and renamed: nothing else is left beside it.
  for (const auto& e : fs::directory_iterator(p.work.path()))
    EXPECT_EQ(e.path().string().find(".kvtmp"), std::string::npos) << e.path();
}

TEST(CliPictures, TheToolLoadsNoGuiLibraryAndItsScriptsRunInTheEditor) {
  PictureSet p(12, 10);
  const std::string tool = std::string(KV_BIN_DIR) + "/korvane-map";
  const std::string libs = p.work / "ldd.txt";
  ASSERT_EQ(std::system(("ldd " + Quote(tool) + " >" + Quote(libs)).c_str()), 0);
  const std::string needed = Text(libs);
  EXPECT_NE(needed.find("libz."), std::string::npos) << needed;
  EXPECT_EQ(needed.find("Qt"), std::string::npos) << needed;
  EXPECT_EQ(needed.find("libX"), std::string::npos) << needed;
  EXPECT_EQ(needed.find("libGL"), std::string::npos) << needed;

  // script: run by the editor's binary, with the tool's options, standard
  // input and exit status.
  kvtest::WriteText(p.work / "s.txt", "print Form1.Caption\nCurTile = 5\nprint CurTile\n");
  ASSERT_EQ(p.Run("--screen 1280x1024 script - <" + Quote(p.work / "s.txt")), 0) << p.Err();
  const std::string out = Text(p.work / "out.txt");
  EXPECT_NE(out.find("Form1.Caption="), std::string::npos) << out;
  EXPECT_NE(out.find("CurTile=5"), std::string::npos) << out;
  kvtest::WriteText(p.work / "bad.txt", "Form1.NoSuchHandler\n");
  EXPECT_EQ(p.Run("script " + Quote(p.work / "bad.txt")), 1);
  EXPECT_NE(p.Err().find("line 1"), std::string::npos) << p.Err();
  EXPECT_EQ(p.Run("script " + Quote(p.work / "missing.txt")), 1);
  EXPECT_NE(p.Err().find("cannot open script"), std::string::npos) << p.Err();
}
