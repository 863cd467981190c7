#include "statefuzz.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMetaMethod>
#include <QScrollBar>

#include "gui/Form1.h"
#include "gui/Form10.h"
#include "gui/Form11.h"
#include "gui/Form12.h"
#include "gui/Form13.h"
#include "gui/Form14.h"
#include "gui/Form15.h"
#include "gui/Form2.h"
#include "gui/Form3.h"
#include "gui/Form4.h"
#include "gui/Form5.h"
#include "gui/Form6.h"
#include "gui/Form8.h"
#include "gui/Form9.h"
#include "gui/LoadSave.h"
#include "gui/script.h"
#include "jumpmap/jumpmap.h"
#include "platform/bitmap.h"
#include "session.h"

namespace fs = std::filesystem;

namespace kvfuzz {

uint32_t ByteChoices::Below(uint32_t n) {
  uint32_t v = 0;
  // As many bytes as n needs; an input that has run out answers 0.
  for (uint32_t range = 1; range < n && !in_.empty(); range <<= 8) {
    v = (v << 8) | in_[0];
    in_ = in_.subspan(1);
  }
  return v % n;
}

void EnsureApplication() {
  if (QApplication::instance()) return;
  static int argc = 1;
  static char name[] = "kv_statefuzz";
  static char* argv[] = {name, nullptr};
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  new QApplication(argc, argv);
}

namespace {

// A form's handlers: the methods of our own classes in its chain, as the
// script runner finds them.
struct Handler {
  QString form;
  QString name;
  std::vector<int> types;
  std::vector<QByteArray> params;
};

std::vector<Handler> AllHandlers() {
  const std::pair<const char*, const QMetaObject*> forms[] = {
      {"Form1", &kv::gui::Form1::staticMetaObject},      {"Form2", &kv::gui::Form2::staticMetaObject},
      {"Form3", &kv::gui::Form3::staticMetaObject},      {"Form4", &kv::gui::Form4::staticMetaObject},
      {"Form5", &kv::gui::Form5::staticMetaObject},      {"Form6", &kv::gui::Form6::staticMetaObject},
      {"Form8", &kv::gui::Form8::staticMetaObject},      {"Form9", &kv::gui::Form9::staticMetaObject},
      {"Form10", &kv::gui::Form10::staticMetaObject},    {"Form11", &kv::gui::Form11::staticMetaObject},
      {"Form12", &kv::gui::Form12::staticMetaObject},    {"Form13", &kv::gui::Form13::staticMetaObject},
      {"Form14", &kv::gui::Form14::staticMetaObject},    {"Form15", &kv::gui::Form15::staticMetaObject},
      {"LoadSave", &kv::gui::LoadSave::staticMetaObject}};
  std::vector<Handler> out;
  for (const auto& [form, mo] : forms) {
    int first = mo->methodOffset();
    for (const QMetaObject* m = mo; m && QByteArray(m->className()).startsWith("kv::"); m = m->superClass())
      first = m->methodOffset();
    for (int i = first; i < mo->methodCount(); ++i) {
      const QMetaMethod m = mo->method(i);
      if (m.methodType() != QMetaMethod::Method && m.methodType() != QMetaMethod::Slot) continue;
      const QString name = QString::fromLatin1(m.name());
      // Loads come with showing a form; the main window's unload and Exit end the run.
      if (name == "Form_Load") continue;
      if (QLatin1String(form) == "Form1" && (name == "Form_Unload" || name == "menu_file_exit_Click")) continue;
      Handler h{QString::fromLatin1(form), name, {}, {}};
      bool usable = true;
      for (int k = 0; k < m.parameterCount(); ++k) {
        const int t = m.parameterType(k);
        usable = usable && (t == QMetaType::Int || t == QMetaType::Double || t == QMetaType::QString);
        h.types.push_back(t);
        h.params.push_back(m.parameterNames().value(k).toLower());
      }
      if (usable) out.push_back(std::move(h));
    }
  }
  return out;
}

const std::vector<Handler>& Handlers() {
  static const std::vector<Handler> h = AllHandlers();
  return h;
}

const std::vector<int> kKeys = {37,  38,  39,  40,  65,  66,  67, 72, 78, 82, 88, 112, 113, 114,
                                115, 116, 117, 118, 119, 191, 13, 27, 32, 48, 57, 0,   255};

std::string Num(long long v) { return std::to_string(v); }

std::string AnyInt(Choices& c) {
  static const std::vector<long long> edges = {0,   1,   2,   3,     -1,     4,     7,     15,      31,      32,
                                               100, 255, 256, 32767, -32768, 32766, 65535, 1000000, -1000000};
  if (c.OneIn(3)) return Num(c.Pick(edges));
  return Num(static_cast<long long>(c.Below(400)) - 20);
}

std::string Coordinate(Choices& c) {
  switch (c.Below(8)) {
    case 0: return Num(-static_cast<long long>(c.Below(100)));
    case 1: return c.OneIn(2) ? "1000000" : "-1000000";
    case 2: return Num(c.Below(40000));
    case 3: return Num(c.Below(600)) + ".5";
    default: return Num(c.Below(1300));
  }
}

std::string AnyText(Choices& c) {
  static const std::vector<std::string> texts = {
      "",    "0",   "1",   "-1",  "2",   "32",   "7",  "100", "32767",        "32768",  "-250",
      "250", "abc", "1e9", "3.5", " 12", "0x10", "-0", "65",  "999999999999", "&H7FFF", "12abc"};
  if (c.OneIn(4)) return Num(c.Below(300));
  return c.Pick(texts);
}

std::string Quoted(const std::string& t) { return "\"" + t + "\""; }

// The files of a folder with one of the endings, sorted.
std::vector<std::string> Files(const std::string& dir, const std::vector<std::string>& ends) {
  std::vector<std::string> out;
  std::error_code ec;
  for (const auto& e : fs::directory_iterator(dir, ec)) {
    const std::string n = e.path().filename().string();
    for (const std::string& end : ends)
      if (n.size() > end.size() && n.compare(n.size() - end.size(), end.size(), end) == 0) out.push_back(n);
  }
  std::sort(out.begin(), out.end());
  return out;
}

std::string Stem(const std::string& name) { return name.substr(0, name.rfind('.')); }

std::vector<uint8_t> ReadAll(const std::string& path) {
  std::ifstream f(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
}

void WriteAll(const std::string& path, const std::vector<uint8_t>& b) {
  std::ofstream f(path, std::ios::binary | std::ios::trunc);
  f.write(reinterpret_cast<const char*>(b.data()), static_cast<std::streamsize>(b.size()));
}

long RssMb() {
  std::ifstream f("/proc/self/statm");
  long pages = 0, rss = 0;
  f >> pages >> rss;
  return rss * 4096 / (1024 * 1024);
}

}  // namespace

Editor::Editor(const std::string& data, const std::string& work) : work_(fs::absolute(work).string()) {
  EnsureApplication();
  app_ = work_ + "/app";
  maps_ = work_ + "/maps";
  pics_ = work_ + "/pics";
  std::error_code ec;
  fs::remove_all(work_, ec);
  fs::create_directories(maps_);
  fs::create_directories(pics_);
  fs::copy(data, app_, fs::copy_options::recursive, ec);
  if (ec) std::fprintf(stderr, "kv_statefuzz: cannot copy %s: %s\n", data.c_str(), ec.message().c_str());
  // A name without a folder (a save with the folder box emptied, a picture
  // named "bmp") lands in the current folder, as it should; the run's current
  // folder is its own work folder, so that nothing lands where it was started.
  fs::current_path(work_, ec);
  if (ec) std::fprintf(stderr, "kv_statefuzz: cannot enter %s: %s\n", work_.c_str(), ec.message().c_str());
  // Pictures of the shapes that have hurt: one pixel, a strip either way, a
  // gradient with many colours, a picture with an "x" before ".bmp".
  auto pic = [&](const char* name, int w, int h, bool gradient) {
    kv::Bitmap b(w, h);
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x)
        b.SetPixel(x, y,
                   gradient ? kv::RGB(x * 37 & 255, y * 53 & 255, (x ^ y) * 11 & 255)
                            : kv::RGB((x / 3) % 2 ? 200 : 0, 120, (y / 2) % 2 ? 0 : 200));
    kv::WriteBmpFile(pics_ + "/" + name, b, nullptr);
  };
  pic("dot.bmp", 1, 1, false);
  pic("stripx.bmp", 300, 2, false);
  pic("tallx.bmp", 2, 300, false);
  pic("landx.bmp", 40, 30, false);
  pic("gradx.bmp", 64, 48, true);
  pic("icon.bmp", 400, 150, true);
  kv::gui::Script().active = true;
  kv::gui::Script().answers.clear();
  form_ = std::make_unique<kv::gui::Form1>(app_);
  form_->SetScreenSize(1366, 768);
  form_->Form_Load();
}

Editor::~Editor() {
  form_.reset();
  kv::gui::Script().answers.clear();
}

std::string Editor::Line(Choices& c) {
  kv::Session& s = form_->session();
  const kv::Document& d = s.doc;
  switch (c.Below(10)) {
    case 0:
    case 1:
    case 2: {  // a handler of a form, with arguments of the kinds its parameters take
      const Handler& h = c.Pick(Handlers());
      std::string line = (h.form + "." + h.name).toStdString();
      for (size_t k = 0; k < h.types.size(); ++k) {
        const QByteArray& p = h.params[k];
        std::string a;
        if (h.types[k] == QMetaType::QString)
          a = Quoted(AnyText(c));
        else if (p == "keycode")
          a = Num(c.OneIn(8) ? c.Below(256) : c.Pick(kKeys));
        else if (p == "shift")
          a = Num(c.Below(8));
        else if (p == "button")
          a = Num(c.Pick(std::vector<int>{1, 1, 2, 4, 0, 3}));
        else if (p == "x" || p == "y")
          a = Coordinate(c);
        else if (h.types[k] == QMetaType::Double)
          a = Coordinate(c);
        else
          a = AnyInt(c);
        line += " " + a;
      }
      return line;
    }
    case 3: {  // a control's property, as the window system sets it
      static const std::vector<std::string> forms = {"Form1",  "Form3",  "Form4",  "Form5",  "Form6",  "Form9",
                                                     "Form10", "Form11", "Form13", "Form14", "Form15", "LoadSave"};
      const std::string fname = c.Pick(forms);
      kv::gui::VbForm* f = form_->FormByName(QString::fromStdString(fname), false);
      if (!f || !f->formWidget()) return "print MapMaxX";
      std::vector<std::pair<std::string, std::string>> props;  // control, property
      for (QObject* o : f->formWidget()->findChildren<QObject*>()) {
        const std::string n = o->objectName().toStdString();
        if (n.empty() || n.find(' ') != std::string::npos || n.find('.') != std::string::npos) continue;
        if (qobject_cast<QLineEdit*>(o)) props.push_back({n, "Text"});
        if (qobject_cast<QScrollBar*>(o)) props.push_back({n, "Value"});
        if (qobject_cast<QListWidget*>(o)) props.push_back({n, "ListIndex"});
      }
      if (props.empty()) return "print MapMaxX";
      std::sort(props.begin(), props.end());
      const auto& [ctl, prop] = c.Pick(props);
      std::string v;
      if (prop == "Text")
        v = Quoted(AnyText(c));
      else if (prop == "ListIndex")
        v = Num(static_cast<long long>(c.Below(12)) - 1);
      else
        v = c.OneIn(4) ? AnyInt(c) : Num(c.Below(2000));
      return fname + "." + ctl + "." + prop + " = " + v;
    }
    case 4: {  // a shared variable set by name
      static const std::vector<QString> names = kv::gui::ScriptVariableNames();
      const std::string n = c.Pick(names).toStdString();
      static const std::vector<std::string> strs = {"mapfile", "mappath", "ndxpath",    "strpath", "dlgfile",
                                                    "dlgdir",  "setpath", "oobtmppath", "dlgext",  "nationset"};
      if (std::find(strs.begin(), strs.end(), n) != strs.end()) {
        // Paths stay inside the fuzzer's own folders.
        const std::vector<std::string> vals = {"",
                                               maps_ + "/v" + Num(c.Below(4)) + ".map",
                                               "x",
                                               "default",
                                               app_ + "/newmap.map",
                                               pics_ + "/landx.bmp",
                                               ".map",
                                               maps_};
        return n + " = " + Quoted(c.Pick(vals));
      }
      if (n == "curhexx" || n == "curhexy" || n == "selx1" || n == "selx2" || n == "sely1" || n == "sely2")
        penSetByHand_ = true;
      if (c.OneIn(2) && (n.find('x') != std::string::npos || n.find('y') != std::string::npos))
        return n + " = " + Num(c.Below(3) + (n.back() == 'y' ? d.MapMaxY : d.MapMaxX) - 1);
      return n + " = " + AnyInt(c);
    }
    case 5: {  // an element of a table
      static const std::vector<std::pair<std::string, int>> arrays = {
          {"HexTile", 0},      {"HexInfo", 7},     {"HexCtl", 2},    {"HexElev", 0},   {"HexDeploy", 0},
          {"HexOrigOwner", 0}, {"HexLandMass", 0}, {"HexAIDist", 0}, {"HexContour", 0}};
      if (c.OneIn(6)) {
        const int rows = d.ObjCount + 1;
        return "ObjList(" + Num(c.Below(rows)) + "," + Num(c.Below(6)) + ") = " + Num(c.Below(40) - 2);
      }
      if (c.OneIn(8)) return "TileType(" + Num(c.Below(260)) + ") = " + Num(c.Below(20));
      const auto& [name, layers] = c.Pick(arrays);
      std::string at = Num(c.Below(d.MapMaxX + 1u)) + "," + Num(c.Below(d.MapMaxY + 1u));
      if (layers) at += "," + Num(c.Below(layers));
      const long long v = c.OneIn(3) ? c.Below(256) : c.Below(16);
      return name + "(" + at + ") = " + Num(v);
    }
    case 6: {  // a press in a hex of the map
      std::string line = "clickhex " + Num(c.Below(d.MapMaxX + 1u)) + " " + Num(c.Below(d.MapMaxY + 1u));
      if (c.OneIn(2)) line += " " + Num(c.Pick(std::vector<int>{1, 2, 1, 4})) + " " + Num(c.Below(8));
      return line;
    }
    case 7: return "answer " + Num(c.Pick(std::vector<int>{1, 2, 6, 7}));
    case 8: return "Form1.Form_KeyDown " + Num(c.Pick(kKeys)) + " " + Num(c.Below(8));
    default: {  // every pass and analysis command of the menus
      static const std::vector<std::string> cmds = {"autoredrawroads_Click",
                                                    "autoredrawterrain_Click",
                                                    "mAutoForest_Click",
                                                    "mAutoMoutains_Click",
                                                    "mMapRebuild_Click",
                                                    "mRedoTerrain_Click",
                                                    "doroads_Click",
                                                    "MemorizeRoads_Click",
                                                    "MemoriseRivers_Click",
                                                    "mMountains_Click",
                                                    "mRndWoods_Click",
                                                    "mCountRoad_Click",
                                                    "mNextUnconnected_Click",
                                                    "VerifyHexData_Click",
                                                    "mDefaultHC_Click",
                                                    "mRoadsOnly_Click",
                                                    "menu_LandMass_Click",
                                                    "mOriginalOwner_Click",
                                                    "mCopy_Click",
                                                    "mPaste_Click",
                                                    "mUndo_Click",
                                                    "mDefaultArea_Click",
                                                    "mRandom_Click",
                                                    "StrategicShow_Click",
                                                    "StrategicHide_Click",
                                                    "BuildAITables_Click",
                                                    "menu_file_save_Click"};
      return "Form1." + c.Pick(cmds);
    }
  }
}

std::vector<std::string> Editor::NextStep(Choices& c) {
  const kv::Session& s = form_->session();
  switch (c.Below(24)) {
    case 0: {  // New Map, of every size the box takes and of the shapes that hurt
      static const std::vector<std::pair<int, int>> shapes = {
          {32767, 0}, {0, 32767}, {1, 32767}, {32767, 1}, {0, 0}, {1, 100}, {2, 300}, {3, 1000},
          {4, 4},     {3, 3},     {59, 39},   {300, 2},   {1, 1}, {32, 32}, {100, 0}, {0, 1}};
      std::string w, h;
      if (c.OneIn(3)) {
        w = Num(c.Below(120));
        h = Num(c.Below(120));
      } else if (c.OneIn(8)) {
        w = Quoted(AnyText(c));
        h = Quoted(AnyText(c));
      } else {
        const auto& [a, b] = c.Pick(shapes);
        w = Num(a);
        h = Num(b);
      }
      return {"Form1.menu_file_new_Click", "Form6.Text1.Text = " + w, "Form6.Text2.Text = " + h,
              c.OneIn(8) ? "Form6.Command1_Click" : "Form6.Command2_Click"};
    }
    case 1: {  // Save As a map of our own
      const std::string name = "m" + Num(saved_++ % 6);
      return {"Form1.menu_file_save_as_Click", "LoadSave.Dir1.Path = " + Quoted(maps_), "LoadSave.Text1.Text = " + name,
              "LoadSave.Command2_Click"};
    }
    case 2: {  // open a map: one saved here, or a damaged copy of one
      std::vector<std::string> maps = Files(maps_, {".map"});
      if (maps.empty()) return {"Form1.menu_file_save_Click"};
      std::string name = c.Pick(maps);
      if (c.OneIn(2) && name[0] == 'm') {
        std::vector<uint8_t> b = ReadAll(maps_ + "/" + name);
        const std::string out = "d" + Num(c.Below(4));
        switch (c.Below(4)) {
          case 0: b.resize(b.size() ? c.Below(static_cast<uint32_t>(b.size())) : 0); break;
          case 1:
            for (int k = 0; k < 8 && !b.empty(); ++k) b[c.Below(static_cast<uint32_t>(b.size()))] = c.Below(256);
            break;
          case 2:  // the size fields right after the header
            for (size_t k = 10; k < std::min<size_t>(b.size(), 24); ++k) b[k] = c.Below(256);
            break;
          default: b.insert(b.end(), c.Below(300), 0xFF); break;
        }
        WriteAll(maps_ + "/" + out + ".map", b);
        std::vector<uint8_t> lev = ReadAll(maps_ + "/" + Stem(name) + ".lev");
        lev.resize(c.Below(static_cast<uint32_t>(lev.size()) + 1));
        WriteAll(maps_ + "/" + out + ".lev", lev);
        name = out + ".map";
      }
      return {"Form1.menu_file_open_Click", "LoadSave.Dir1.Path = " + Quoted(maps_),
              "LoadSave.Text1.Text = " + Stem(name), "LoadSave.Command1_Click"};
    }
    case 3: {  // the bitmap utility with a picture of ours or one it made
      std::vector<std::string> pics = Files(pics_, {".bmp"});
      std::string dir = pics_;
      if (c.OneIn(3)) {
        std::vector<std::string> made = Files(app_, {".bmp"});
        if (!made.empty()) {
          pics = made;
          dir = app_;
        }
      }
      std::vector<std::string> lines = {"Form1.LoadBitmap_Click", "Form4.LoadBitmap_Click",
                                        "LoadSave.Dir1.Path = " + Quoted(dir),
                                        "LoadSave.Text1.Text = " + Stem(c.Pick(pics)), "LoadSave.Command1_Click"};
      if (c.OneIn(3)) lines.push_back("Form4.bmp2map_Click");
      return lines;
    }
    case 4: {  // a press anywhere on a picture of a form, inside or outside it
      static const std::vector<std::string> pics = {"Form1.Picture1_MouseDown", "Form1.Picture1_MouseMove",
                                                    "Form1.Picture2_MouseDown", "Form5.Picture2_MouseDown",
                                                    "Form4.Picture2_MouseDown", "Form4.Picture2_MouseMove",
                                                    "Form2.Picture1_MouseDown", "Form2.Picture1_MouseMove"};
      return {c.Pick(pics) + " " + Num(c.Pick(std::vector<int>{1, 2, 4})) + " " + Num(c.Below(8)) + " " +
              Coordinate(c) + " " + Coordinate(c)};
    }
    default: {
      (void)s;
      return {Line(c)};
    }
  }
}

std::string Editor::Run(const std::string& line) {
  const kv::Document& d = form_->session().doc;
  const int w = d.MapMaxX, h = d.MapMaxY;
  std::istringstream in(line + "\n");
  static std::FILE* sink = std::fopen("/dev/null", "w");
  kv::gui::RunScript(*form_, in, sink, sink);
  // A map of another size has been made, opened or imported: the current
  // hex and the block are the editor's own again.
  if (d.MapMaxX != w || d.MapMaxY != h) penSetByHand_ = false;
  return Check();
}

std::string Editor::Check() {
  const kv::Session& s = form_->session();
  const kv::Document& d = s.doc;
  char buf[256];
  auto fail = [&](const char* what) {
    std::snprintf(buf, sizeof buf, "%s (map %d x %d)", what, d.MapMaxX, d.MapMaxY);
    return std::string(buf);
  };
  if (d.MapMaxX < 0 || d.MapMaxY < 0) return fail("a negative map size");
  const size_t n = d.N();
  if (d.HexTile.raw().size() != n || d.HexInfo.raw().size() != n * 7 || d.HexElev.raw().size() != n ||
      d.HexCtl.raw().size() != n * 2 || d.HexDeploy.raw().size() != n || d.HexLandMass.raw().size() != n ||
      d.HexContour.raw().size() != n || d.HexOrigOwner.raw().size() != n || d.HexAIDist.raw().size() != n ||
      d.HexPixel.raw().size() != n * 2)
    return fail("an array does not match the map's size");
  if (d.ObjCount < 0 || d.ObjList.Rows() != d.ObjCount + 1) return fail("the objective table does not match ObjCount");
  const kv::Pens& p = s.pens;
  if (!penSetByHand_) {
    if (!d.OnMap(p.CurHexX, p.CurHexY)) return fail("the current hex is off the map");
    auto in = [&](int v, int max) { return v >= 0 && v <= max; };
    if (!in(p.SelX1, d.MapMaxX) || !in(p.SelX2, d.MapMaxX) || !in(p.SelY1, d.MapMaxY) || !in(p.SelY2, d.MapMaxY))
      return fail("the selection block is off the map");
  }
  for (const kv::ScrollBarModel* b : {&s.view.HScroll1, &s.view.VScroll1})
    // A bar's maximum may lie below its minimum (a map smaller than the view).
    if (b->Value < std::min(b->Min, b->Max) || b->Value > std::max(b->Min, b->Max))
      return fail("a scroll bar's value is outside its range");
  if (s.forms.Form5Loaded) {
    const long long px = static_cast<long long>(s.jump.Picture2.Width()) * s.jump.Picture2.Height();
    if (px > std::max<long long>(kv::kJumpPicturePixels, static_cast<long long>(n)))
      return fail("the jump map is too large");
  }
  if (s.bmp.PixelDone.size() != static_cast<size_t>(s.bmp.PixelDoneW) * s.bmp.PixelDoneH)
    return fail("PixelDone does not match its size");
  if (const long mb = RssMb(); mb > 3000) return fail("more than 3 GB in use");
  return {};
}

}  // namespace kvfuzz
