#include "gui/script.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

#include "gui/Form1.h"
#include "gui/editorscript.h"
#include "gui/keeper.h"
#include "gui/qtui.h"
#include "gui/vbform.h"
#include "session.h"
#include "view/geometry.h"
#include "view/transform.h"

namespace kv::gui {

namespace {

struct ScriptError {
  QString text;
};

[[noreturn]] void Fail(const QString& text) { throw ScriptError{text}; }

// Splits at blanks; double quotes keep blanks (and lose the quotes), and
// blanks inside parentheses stay with their token: HexTile(3, 4).
QStringList Tokens(const QString& line) {
  QStringList out;
  QString cur;
  bool inQuote = false, any = false;
  int depth = 0;
  for (QChar c : line) {
    if (inQuote) {
      if (c == '"')
        inQuote = false;
      else
        cur += c;
      continue;
    }
    if (c == '"') {
      inQuote = any = true;
    } else if (c.isSpace() && depth == 0) {
      if (any) out << cur;
      cur.clear();
      any = false;
    } else {
      if (c == '(') ++depth;
      if (c == ')' && depth > 0) --depth;
      cur += c;
      any = true;
    }
  }
  if (inQuote) Fail(QStringLiteral("a double quote is not closed"));
  if (any) out << cur;
  return out;
}

// The position of a top-level "=" outside quotes, or -1.
int AssignPos(const QString& line) {
  bool inQuote = false;
  int depth = 0;
  for (int i = 0; i < line.size(); ++i) {
    const QChar c = line[i];
    if (c == '"') inQuote = !inQuote;
    if (inQuote) continue;
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (c == '=' && depth == 0) return i;
  }
  return -1;
}

long long ToNumber(const QString& v) {
  bool ok = false;
  const QString t = v.trimmed();
  long long n = t.toLongLong(&ok);
  if (!ok) {
    const QString l = t.toLower();
    if (l == "true") return -1;
    if (l == "false") return 0;
    Fail(QStringLiteral("\"%1\" is no whole number").arg(v));
  }
  return n;
}

// A shared variable: read and write as text.
struct Var {
  std::function<QString(Session&)> get;
  std::function<void(Session&, const QString&)> set;  // empty: read-only
};

template <class T>
Var NumVar(std::function<T&(Session&)> ref, long long lo, long long hi) {
  return {[ref](Session& s) { return QString::number(static_cast<long long>(ref(s))); },
          [ref, lo, hi](Session& s, const QString& v) {
            const long long n = ToNumber(v);
            if (n < lo || n > hi) Fail(QStringLiteral("%1 is outside %2..%3").arg(n).arg(lo).arg(hi));
            ref(s) = static_cast<T>(n);
          }};
}
Var I16(std::function<int16_t&(Session&)> r) { return NumVar<int16_t>(std::move(r), -32768, 32767); }
Var I32(std::function<int32_t&(Session&)> r) { return NumVar<int32_t>(std::move(r), INT32_MIN, INT32_MAX); }
Var Str(std::function<std::string&(Session&)> r) {
  return {[r](Session& s) { return QString::fromLatin1(r(s).c_str()); },
          [r](Session& s, const QString& v) { r(s) = v.toLatin1().toStdString(); }};
}
Var ReadOnly(std::function<long long(Session&)> f) {
  return {[f](Session& s) { return QString::number(f(s)); }, {}};
}

const std::map<QString, Var>& Variables() {
  static const std::map<QString, Var> vars = [] {
    std::map<QString, Var> m;
#define KV_PEN(n) m[QStringLiteral(#n).toLower()] = I16([](Session& s) -> int16_t& { return s.pens.n; });
    KV_PEN(CurTile)
    KV_PEN(CurNation) KV_PEN(CurOrigNation) KV_PEN(CurObjType) KV_PEN(CurSide) KV_PEN(CurSideKind) KV_PEN(CurHexX)
        KV_PEN(CurHexY) KV_PEN(SelX1) KV_PEN(SelX2) KV_PEN(SelY1) KV_PEN(SelY2) KV_PEN(CtlMode) KV_PEN(AutoTile)
            KV_PEN(AutoTileResume) KV_PEN(RandomMode) KV_PEN(SideEdit) KV_PEN(ClearSides) KV_PEN(ElevMode)
                KV_PEN(ElevValue) KV_PEN(HexOutlines) KV_PEN(ShowRoadControl) KV_PEN(HighlightTile) KV_PEN(GridOn)
                    KV_PEN(GridX) KV_PEN(GridY) KV_PEN(DefaultAreaAll) KV_PEN(ShiftKey) KV_PEN(AreaMode)
                        KV_PEN(FromMapEdit) KV_PEN(ImgScaleA) KV_PEN(ImgScaleB) KV_PEN(ColourCRV)
#undef KV_PEN
                            m["jumpboxcolour"] = I32([](Session& s) -> int32_t& { return s.pens.JumpBoxColour; });
    // The view's origin is a hex number, 16 bits as every column and row.
    m["viewx"] = NumVar<int32_t>([](Session& s) -> int32_t& { return s.view.ViewX; }, -32768, 32767);
    m["viewy"] = NumVar<int32_t>([](Session& s) -> int32_t& { return s.view.ViewY; }, -32768, 32767);
    // The view's size as a layout can make it, up to a screen of 8192 pixels
    // each way: the off-screen buffers are made to it.
    m["viewcols"] = NumVar<int16_t>([](Session& s) -> int16_t& { return s.view.ViewCols; }, 0, 180);
    m["viewrows"] = NumVar<int16_t>([](Session& s) -> int16_t& { return s.view.ViewRows; }, 0, 160);
    m["viewpixw"] = NumVar<int32_t>([](Session& s) -> int32_t& { return s.view.ViewPixW; }, 0, 8192);
    m["viewpixh"] = NumVar<int32_t>([](Session& s) -> int32_t& { return s.view.ViewPixH; }, 0, 8192);
    m["viewmaxx"] = NumVar<int32_t>([](Session& s) -> int32_t& { return s.view.ViewMaxX; }, -32768, 32767);
    m["viewmaxy"] = NumVar<int32_t>([](Session& s) -> int32_t& { return s.view.ViewMaxY; }, -32768, 32767);
    m["scrollsilent"] = I16([](Session& s) -> int16_t& { return s.view.ScrollSilent; });
    m["dlgmode"] = I16([](Session& s) -> int16_t& { return s.ed.dlg.DlgMode; });
    m["mapmaxx"] = ReadOnly([](Session& s) { return s.doc.MapMaxX; });
    m["mapmaxy"] = ReadOnly([](Session& s) { return s.doc.MapMaxY; });
    m["objcount"] = ReadOnly([](Session& s) { return s.doc.ObjCount; });
    m["tilemax"] = ReadOnly([](Session& s) { return s.ref.TileMax; });
    m["terrainmax"] = ReadOnly([](Session& s) { return s.ref.TerrainMax; });
    m["nationcount"] = ReadOnly([](Session& s) { return s.ref.NationCount; });
    m["hexw"] = ReadOnly([](Session& s) { return s.ref.HexW; });
    m["hexh"] = ReadOnly([](Session& s) { return s.ref.HexH; });
    m["colpitch"] = ReadOnly([](Session& s) { return s.ref.ColPitch; });
    m["rowpitch"] = ReadOnly([](Session& s) { return s.ref.RowPitch; });
    m["hexinset"] = ReadOnly([](Session& s) { return s.ref.HexInset; });
    m["versionno"] = ReadOnly([](Session&) { return VersionNo; });
    m["mousepointer"] = ReadOnly([](Session& s) { return s.forms.MousePointer; });
    // The rest of the shared data: flag offsets, the jump map's scale and
    // pitches, the bitmap utility's modes. Values that size an array or a
    // buffer (the map, the tables, the hex geometry) are read-only.
    m["flagdx"] = NumVar<uint8_t>([](Session& s) -> uint8_t& { return s.ref.FlagDX; }, 0, 255);
    m["flagdy"] = NumVar<uint8_t>([](Session& s) -> uint8_t& { return s.ref.FlagDY; }, 0, 255);
    m["hexslant"] = ReadOnly([](Session& s) { return s.ref.HexSlant; });
    m["jumpcolpitch"] = NumVar<int16_t>([](Session& s) -> int16_t& { return s.ref.JumpColPitch; }, 0, 1000);
    m["jumprowpitch"] = NumVar<int16_t>([](Session& s) -> int16_t& { return s.ref.JumpRowPitch; }, 0, 1000);
    m["jumpfilter"] = I16([](Session& s) -> int16_t& { return s.jump.JumpFilter; });
    m["jumpscale"] = {[](Session& s) { return QString::number(static_cast<double>(s.jump.JumpScale), 'g', 7); },
                      [](Session& s, const QString& v) {
                        bool ok = false;
                        const double d = v.trimmed().toDouble(&ok);
                        if (!ok || !(d >= -1000 && d <= 1000)) Fail(QStringLiteral("\"%1\" is no scale").arg(v));
                        s.jump.JumpScale = static_cast<float>(d);
                      }};
    m["jumpmapopen"] = ReadOnly([](Session& s) { return s.forms.Form5Loaded ? -1 : 0; });
    m["bufw"] = ReadOnly([](Session& s) { return s.sprites.BufW; });
    m["bufh"] = ReadOnly([](Session& s) { return s.sprites.BufH; });
    m["replacemode"] = NumVar<int16_t>([](Session& s) -> int16_t& { return s.bmp.ReplaceMode; }, -1, 0);
    m["extremearmed"] = NumVar<int16_t>([](Session& s) -> int16_t& { return s.bmp.ExtremeArmed; }, 0, 1);
    m["mapeditmode"] = NumVar<int16_t>([](Session& s) -> int16_t& { return s.bmp.MapEditMode; }, 0, 1);
    m["bitmapname"] = Str([](Session& s) -> std::string& { return s.bmp.BitmapName; });
    m["mapfile"] = Str([](Session& s) -> std::string& { return s.doc.MapFile; });
    m["mappath"] = Str([](Session& s) -> std::string& { return s.doc.MapPath; });
    m["ndxpath"] = Str([](Session& s) -> std::string& { return s.doc.NdxPath; });
    m["strpath"] = Str([](Session& s) -> std::string& { return s.doc.StrPath; });
    m["nationset"] = Str([](Session& s) -> std::string& { return s.doc.NationSet; });
    m["dlgext"] = Str([](Session& s) -> std::string& { return s.ed.dlg.DlgExt; });
    m["dlgdir"] = Str([](Session& s) -> std::string& { return s.ed.dlg.DlgDir; });
    m["dlgfile"] = Str([](Session& s) -> std::string& { return s.ed.dlg.DlgFile; });
    m["setpath"] = Str([](Session& s) -> std::string& { return s.scn.SetPath; });
    m["oobtmppath"] = Str([](Session& s) -> std::string& { return s.scn.OobTmpPath; });
    return m;
  }();
  return vars;
}

// An element of a per-hex array or table: HexTile(3, 4), HexInfo(3, 4, 0).
struct Element {
  QString name;
  std::vector<long long> idx;
};

bool ParseElement(const QString& text, Element* e) {
  static const QRegularExpression re(QStringLiteral("^([A-Za-z_][A-Za-z0-9_]*)\\((.*)\\)$"));
  const auto m = re.match(text.trimmed());
  if (!m.hasMatch()) return false;
  e->name = m.captured(1).toLower();
  for (const QString& part : m.captured(2).split(QLatin1Char(','))) e->idx.push_back(ToNumber(part));
  return true;
}

template <class T>
T* HexCell(Session& s, HexArray<T>& a, const Element& e, int layers) {
  const size_t want = layers > 1 ? 3 : 2;
  if (e.idx.size() != want) Fail(QStringLiteral("%1 takes %2 indexes").arg(e.name).arg(want));
  const long long x = e.idx[0], y = e.idx[1], k = want == 3 ? e.idx[2] : 0;
  if (!s.doc.OnMap(static_cast<int>(x), static_cast<int>(y)) || k < 0 || k >= layers || !a.InRange(x, y, k))
    Fail(QStringLiteral("%1 index out of range").arg(e.name));
  return &a(static_cast<int>(x), static_cast<int>(y), static_cast<int>(k));
}

// Reads (value == nullptr) or writes an element; returns its text.
QString AccessElement(Session& s, const Element& e, const QString* value) {
  Document& d = s.doc;
  auto num = [&](auto* cell, long long lo, long long hi) {
    if (value) {
      const long long n = ToNumber(*value);
      if (n < lo || n > hi) Fail(QStringLiteral("%1 is outside %2..%3").arg(n).arg(lo).arg(hi));
      *cell = static_cast<std::remove_pointer_t<decltype(cell)>>(n);
    }
    return QString::number(static_cast<long long>(*cell));
  };
  if (e.name == "hextile") return num(HexCell(s, d.HexTile, e, 1), -32768, 32767);
  if (e.name == "hexinfo") return num(HexCell(s, d.HexInfo, e, 7), 0, 255);
  if (e.name == "hexelev") return num(HexCell(s, d.HexElev, e, 1), 0, 255);
  if (e.name == "hexctl") return num(HexCell(s, d.HexCtl, e, 2), 0, 255);
  if (e.name == "hexdeploy") return num(HexCell(s, d.HexDeploy, e, 1), -32768, 32767);
  if (e.name == "hexlandmass") return num(HexCell(s, d.HexLandMass, e, 1), -32768, 32767);
  if (e.name == "hexcontour") return num(HexCell(s, d.HexContour, e, 1), 0, 255);
  if (e.name == "hexorigowner") return num(HexCell(s, d.HexOrigOwner, e, 1), 0, 255);
  if (e.name == "hexaidist") return num(HexCell(s, d.HexAIDist, e, 1), -32768, 32767);
  if (e.name == "hexpixel") {
    if (value) Fail(QStringLiteral("HexPixel is computed"));
    return num(HexCell(s, d.HexPixel, e, 2), INT32_MIN, INT32_MAX);
  }
  auto one = [&](size_t size) -> size_t {
    if (e.idx.size() != 1 || e.idx[0] < 0 || static_cast<size_t>(e.idx[0]) >= size)
      Fail(QStringLiteral("%1 index out of range").arg(e.name));
    return static_cast<size_t>(e.idx[0]);
  };
  if (e.name == "tiletype") return num(&s.ref.TileType[one(s.ref.TileType.size())], 0, 255);
  if (e.name == "tileroad") return num(&s.ref.TileRoad[one(s.ref.TileRoad.size())], 0, 255);
  if (e.name == "terrainname" || e.name == "nationname") {
    if (value) Fail(QStringLiteral("%1 is read-only").arg(e.name));
    const auto& v = e.name == "terrainname" ? s.ref.TerrainName : s.ref.NationName;
    return QString::fromLatin1(v[one(v.size())].c_str());
  }
  if (e.name == "objlist") {
    if (e.idx.size() != 2 || e.idx[0] < 0 || e.idx[0] > d.ObjCount || e.idx[1] < 0 || e.idx[1] > 5)
      Fail(QStringLiteral("ObjList index out of range"));
    return num(&d.ObjList(static_cast<int>(e.idx[0]), static_cast<int>(e.idx[1])), -32768, 32767);
  }
  Fail(QStringLiteral("unknown array %1").arg(e.name));
}

class Runner {
 public:
  Runner(Form1& f, std::FILE* out) : f_(f), s_(f.session()), out_(out) {}

  void Line(const QString& raw) {
    QString line = raw;
    // A '#' outside quotes starts a comment.
    bool inQuote = false;
    for (int i = 0; i < line.size(); ++i) {
      if (line[i] == '"') inQuote = !inQuote;
      if (line[i] == '#' && !inQuote) {
        line.truncate(i);
        break;
      }
    }
    line = line.trimmed();
    if (line.isEmpty()) return;
    const QStringList head = Tokens(line);
    const QString cmd = head[0].toLower();
    if (cmd == "print") return Print(head.mid(1));
    if (cmd == "answer") return Answer(head.mid(1));
    if (cmd == "clickhex") return ClickHex(head.mid(1));
    const int eq = AssignPos(line);
    if (eq >= 0) {
      const QStringList lhs = Tokens(line.left(eq)), rhs = Tokens(line.mid(eq + 1));
      if (lhs.size() != 1 || rhs.size() != 1) Fail(QStringLiteral("an assignment takes NAME = VALUE"));
      return Assign(lhs[0], rhs[0]);
    }
    Call(head);
  }

 private:
  // The pseudo-form of the editor's comfort.
  static bool IsEditor(const QString& name) { return name.compare(QStringLiteral("Editor"), Qt::CaseInsensitive) == 0; }
  // Splits "Form.Control.Property" or "Form.Handler".
  static QStringList Dotted(const QString& t) { return t.split(QLatin1Char('.')); }

  VbForm* Form(const QString& name) {
    VbForm* f = f_.FormByName(name);
    if (!f) Fail(QStringLiteral("no form %1").arg(name));
    return f;
  }

  QObject* Control(VbForm* form, const QString& name) {
    QObject* c = FindControl(form->formWidget(), name);
    if (!c) Fail(QStringLiteral("%1 has no control %2").arg(form->formWidget()->objectName(), name));
    return c;
  }

  // The pseudo-form Editor: the comfort layer's names (gui/editorscript.h).
  static bool IsEditor(const QStringList& parts) {
    return parts.size() == 2 && parts[0].compare(QStringLiteral("Editor"), Qt::CaseInsensitive) == 0;
  }
  static const EditorName& EditorRow(const QString& name) {
    const EditorName* row = FindEditorName(name);
    if (!row) Fail(QStringLiteral("Editor has no %1").arg(name));
    return *row;
  }

  void Call(const QStringList& t) {
    const QStringList parts = Dotted(t[0]);
    if (IsEditor(parts)) {
      const EditorName& row = EditorRow(parts[1]);
      if (!row.run) Fail(QStringLiteral("Editor.%1 is no command").arg(parts[1]));
      QString err;
      if (!row.run(f_, t.mid(1), &err)) Fail(QStringLiteral("Editor.%1: %2").arg(parts[1], err));
      Settle();
      return;
    }
    if (parts.size() != 2) Fail(QStringLiteral("\"%1\" names nothing known").arg(t[0]));
    f_.keeper().history().Name((parts[0].compare(QStringLiteral("Form1"), Qt::CaseInsensitive) == 0
                                    ? f_.keeper().StepName(parts[1], t.mid(1))
                                    : parts[1])
                                   .toStdString());
    VbForm* form = Form(parts[0]);
    QString err;
    if (!InvokeHandler(form->formWidget(), parts[1], t.mid(1), &err)) Fail(err);
    Settle();
  }

  void Assign(const QString& target, const QString& value) {
    const QStringList parts = Dotted(target);
    if (IsEditor(parts)) {
      const EditorName& row = EditorRow(parts[1]);
      if (!row.set) Fail(QStringLiteral("Editor.%1 cannot be set").arg(parts[1]));
      QString err;
      if (!row.set(f_, value, &err)) Fail(QStringLiteral("Editor.%1: %2").arg(parts[1], err));
      f_.SyncControls();
      return;
    }
    f_.keeper().history().Name("Set " + target.toStdString());
    if (parts.size() == 3) {
      VbForm* form = Form(parts[0]);
      QObject* ctl = Control(form, parts[1]);
      QString err;
      if (!SetControlProperty(*form, ctl, parts[2], value, &err)) Fail(err);
      Settle();
      return;
    }
    if (parts.size() != 1) Fail(QStringLiteral("\"%1\" names nothing known").arg(target));
    Element e;
    if (ParseElement(target, &e)) {
      AccessElement(s_, e, &value);
      return;
    }
    auto it = Variables().find(target.toLower());
    if (it == Variables().end()) Fail(QStringLiteral("unknown variable %1").arg(target));
    if (!it->second.set) Fail(QStringLiteral("%1 is read-only").arg(target));
    it->second.set(s_, value);
    f_.SyncControls();
  }

  QString Value(const QString& item) {
    const QStringList parts = Dotted(item);
    if (IsEditor(parts)) {
      const EditorName& row = EditorRow(parts[1]);
      if (!row.get) Fail(QStringLiteral("Editor.%1 has no value").arg(parts[1]));
      return row.get(f_);
    }
    if (parts.size() == 2 || parts.size() == 3) {
      VbForm* form = Form(parts[0]);
      form->SyncControls();
      QObject* ctl = parts.size() == 2 ? static_cast<QObject*>(form->formWidget()) : Control(form, parts[1]);
      QString out, err;
      if (!GetControlProperty(*form, ctl, parts.back(), &out, &err)) Fail(err);
      return out;
    }
    Element e;
    if (ParseElement(item, &e)) return AccessElement(s_, e, nullptr);
    auto it = Variables().find(item.toLower());
    if (it == Variables().end()) Fail(QStringLiteral("unknown variable %1").arg(item));
    return it->second.get(s_);
  }

  void Print(const QStringList& items) {
    if (items.isEmpty()) Fail(QStringLiteral("print needs an item"));
    for (const QString& item : items) {
      const QString v = Value(item);
      std::fprintf(out_, "%s=%s\n", item.toLatin1().constData(), v.toLatin1().constData());
    }
    std::fflush(out_);
  }

  void Answer(const QStringList& t) {
    if (t.size() != 1) Fail(QStringLiteral("answer takes one number"));
    const long long n = ToNumber(t[0]);
    if (n != vbOK && n != vbCancel && n != vbYes && n != vbNo)
      Fail(QStringLiteral("answer takes 1 (OK), 2 (Cancel), 6 (Yes) or 7 (No)"));
    Script().answers.push_back(static_cast<int>(n));
  }

  void ClickHex(const QStringList& t) {
    if (t.size() < 2 || t.size() > 4) Fail(QStringLiteral("clickhex takes X Y [BUTTON [SHIFT]]"));
    const long long x = ToNumber(t[0]), y = ToNumber(t[1]);
    const int button = t.size() > 2 ? static_cast<int>(ToNumber(t[2])) : 1;
    const int shift = t.size() > 3 ? static_cast<int>(ToNumber(t[3])) : 0;
    if (!s_.doc.OnMap(static_cast<int>(x), static_cast<int>(y)))
      Fail(QStringLiteral("hex (%1, %2) is not on the map").arg(x).arg(y));
    f_.keeper().history().Name(f_.keeper().StepName(QStringLiteral("Picture1_MouseDown")).toStdString());
    double X = 0, Y = 0;
    ViewTransform(s_.ref, s_.view).HexCentre(static_cast<int>(x), static_cast<int>(y), X, Y);
    // The shift state counts as held for this press, as a key event would have set it.
    const int16_t before = s_.pens.ShiftKey;
    if (shift) s_.pens.ShiftKey = static_cast<int16_t>(shift);
    f_.Picture1_MouseDown(button, shift, X, Y);
    if (shift) s_.pens.ShiftKey = before;
    Settle();
  }

  void Settle() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
  }

  Form1& f_;
  Session& s_;
  std::FILE* out_;
};

}  // namespace

std::vector<QString> ScriptVariableNames() {
  std::vector<QString> out;
  for (const auto& [name, var] : Variables()) out.push_back(name);
  return out;
}

int RunScript(Form1& form, std::istream& in, std::FILE* out, std::FILE* err) {
  Script().active = true;
  Runner r(form, out);
  std::string line;
  int n = 0;
  while (std::getline(in, line)) {
    ++n;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    // Each line is one step of the history.
    Keeper& keeper = form.keeper();
    keeper.BeginStep();
    try {
      r.Line(QString::fromLatin1(line.c_str()));
      keeper.EndStep();
    } catch (const ScriptError& e) {
      keeper.EndStep();
      std::fflush(out);
      std::fprintf(err, "line %d: %s\n", n, e.text.toLatin1().constData());
      return 1;
    }
  }
  return 0;
}

}  // namespace kv::gui
