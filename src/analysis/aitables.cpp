// Distance fields and the .ai file: everything but the view's part.
#include "analysis/aitables.h"

#include <algorithm>
#include <climits>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "document/mapstate.h"
#include "platform/fileio.h"

namespace kv {

namespace {
constexpr int32_t kNoVisit = INT32_MIN;  // no 16-bit land-mass number equals it
}  // namespace

std::string AIFilePath(const MapState& s) {
  const Document& d = s.doc;
  if (!d.MapPath.empty()) return CutExt(d.MapPath, 4, ".ai");
  return s.App(CutExt(d.MapFile, 4, ".ai"));
}

AIFieldMaker::AIFieldMaker(const Document& d) : w_(d.W()), h_(d.H()), stride_(d.H() + 1) {
  // One padding column and row past the map's edge read as "not reached";
  // column 0 and row 0 are never visited either.
  mass_.assign(static_cast<size_t>(w_ + 1) * stride_, kNoVisit);
  own_.resize(static_cast<size_t>(w_) * h_);
  for (int x = 0; x < w_; ++x)
    for (int y = 0; y < h_; ++y) {
      own_[static_cast<size_t>(x) * h_ + y] = d.HexLandMass(x, y);
      if (x >= 1 && y >= 1 && d.HexInfo(x, y, 0) > 0) mass_[static_cast<size_t>(x) * stride_ + y] = d.HexLandMass(x, y);
    }
}

void AIFieldMaker::Compute(int ox, int oy, std::vector<int32_t>& work, int16_t* block) const {
  const int S = stride_, maxX = w_ - 1, maxY = h_ - 1;
  work.assign(mass_.size(), 0);
  int32_t* f = work.data();
  const int32_t mass = own_[static_cast<size_t>(ox) * h_ + oy];
  // The objective holds 1 ("0 steps"); in column 0 or row 0 no neighbour can
  // read it, so it stays out of the working field.
  if (ox >= 1 && oy >= 1) f[static_cast<size_t>(ox) * S + oy] = 1;
  // Offsets of the six neighbours in the column-major field, by column parity.
  const int evenOff[6] = {S + 1, 1, -S + 1, -S, -1, S};
  const int oddOff[6] = {S, 1, -S, -S - 1, -1, S - 1};
  const int32_t* m = mass_.data();

  auto ring = [&](int R) {
    int cx = ox, cy = oy - R;  // R steps straight above the objective
    for (int side = 1; side <= 6; ++side)
      for (int k = 0; k < R; ++k) {
        const bool even = (cx & 1) == 0;
        switch (side) {
          case 1:
            cx += 1;
            cy += even ? 1 : 0;
            break;
          case 2: cy += 1; break;
          case 3:
            cx -= 1;
            cy += even ? 1 : 0;
            break;
          case 4:
            cx -= 1;
            cy -= even ? 0 : 1;
            break;
          case 5: cy -= 1; break;
          default:
            cx += 1;
            cy -= even ? 0 : 1;
            break;
        }
        if (static_cast<unsigned>(cx) > static_cast<unsigned>(maxX) ||
            static_cast<unsigned>(cy) > static_cast<unsigned>(maxY))
          continue;
        const size_t i = static_cast<size_t>(cx) * S + cy;
        if (m[i] != mass) continue;
        // Relax from the neighbours: the least reached one, plus a step.
        const int* off = (cx & 1) == 0 ? evenOff : oddOff;
        int32_t c = f[i];
        for (int j = 0; j < 6; ++j) {
          const int32_t n = f[i + off[j]];
          if (n > 0 && (c == 0 || n + 1 < c)) c = n + 1;
        }
        f[i] = c;
      }
  };

  const int big = std::max(maxX, maxY);
  int R = 1;
  do {
    ring(R);
    ++R;
  } while (R < big);
  for (R = big; R >= 1; --R) ring(R);

  for (int x = 0; x < w_; ++x)
    for (int y = 0; y < h_; ++y) {
      int32_t v = (x == ox && y == oy) ? 1 : f[static_cast<size_t>(x) * S + y];
      if (v > 32767) v = 32767;  // a path too long for 16 bits keeps the longest that fits
      block[static_cast<size_t>(x) * h_ + y] = static_cast<int16_t>(v - 1);
    }
}

bool WriteAIFile(MapState& s, int threads, const std::function<void(int i)>& beforeObjective) {
  Document& d = s.doc;
  const int n = d.ObjCount;
  const std::string path = AIFilePath(s);
  SafeFileWriter out(path);
  out.KeepOldTail(true);  // written over from byte 0, never cut
  bool ok = out.ok();
  if (n > 0 && ok) {
    const AIFieldMaker maker(d);
    const size_t entries = maker.BlockEntries();
    auto computeInto = [&](int i, std::vector<int32_t>& work, int16_t* block) {
      const int ox = d.ObjList(i, 0), oy = d.ObjList(i, 1);
      if (d.OnMap(ox, oy))
        maker.Compute(ox, oy, work, block);
      else
        std::fill(block, block + entries, static_cast<int16_t>(-1));
    };
    const int workers = std::clamp(threads, 1, n);
    const int window = workers == 1 ? 1 : 2 * workers;
    std::vector<std::vector<int16_t>> slots(window, std::vector<int16_t>(entries));
    std::vector<int> slotHolds(window, 0);  // objective whose block a slot holds, 0 for none
    std::mutex mu;
    std::condition_variable cv;
    int written = 0, next = 1;
    bool stop = false;
    std::vector<std::thread> pool;

    auto worker = [&] {
      std::vector<int32_t> work;
      for (;;) {
        int i;
        {
          std::unique_lock lk(mu);
          if (stop || next > n) return;
          i = next++;
          // The slot is free once the block `window` places back is written.
          cv.wait(lk, [&] { return stop || i <= written + window; });
          if (stop) return;
        }
        computeInto(i, work, slots[(i - 1) % window].data());
        {
          std::lock_guard lk(mu);
          slotHolds[(i - 1) % window] = i;
        }
        cv.notify_all();
      }
    };
    if (workers > 1)
      for (int t = 0; t < workers; ++t) pool.emplace_back(worker);
    auto finishPool = [&] {
      {
        std::lock_guard lk(mu);
        stop = true;
      }
      cv.notify_all();
      for (auto& t : pool) t.join();
      pool.clear();
    };

    try {
      std::vector<int32_t> work;
      for (int i = 1; i <= n && ok; ++i) {
        if (beforeObjective) beforeObjective(i);
        std::vector<int16_t>& slot = slots[(i - 1) % window];
        if (workers == 1) {
          computeInto(i, work, slot.data());
        } else {
          std::unique_lock lk(mu);
          cv.wait(lk, [&] { return slotHolds[(i - 1) % window] == i; });
        }
        // The last text the one-by-one order shows for this objective.
        s.SetLabel3("Processing Objective # " + std::to_string(i) + " R: 1");
        ok = out.write(slot.data(), entries * sizeof(int16_t));
        if (i == n) {
          d.HexAIDist.Allocate(d.W(), d.H());
          for (int x = 0; x < d.W(); ++x)
            for (int y = 0; y < d.H(); ++y)
              d.HexAIDist(x, y) = static_cast<int16_t>(slot[static_cast<size_t>(x) * d.H() + y] + 1);
        }
        {
          std::lock_guard lk(mu);
          written = i;
          slotHolds[(i - 1) % window] = 0;
        }
        cv.notify_all();
      }
    } catch (...) {
      finishPool();
      throw;
    }
    finishPool();
  }
  if (ok) ok = out.commit();
  if (!ok) {
    s.MsgBox("The AI tables could not be written: " + out.error() + ".");
    return false;
  }
  return true;
}

bool ReadAIBlock(ByteSource& in, int index, int w, int h, HexArray<int16_t>& field, std::string* err) {
  field.Allocate(w, h);
  const uint64_t entries = static_cast<uint64_t>(w) * h, bytes = entries * 2;
  const uint64_t at = static_cast<uint64_t>(index - 1) * bytes;
  if (index < 1 || in.size() < at + bytes) {
    if (err)
      *err = "the AI file holds " + std::to_string(in.size()) + " bytes, too few for the table of objective " +
             std::to_string(index) + " of a map of " + std::to_string(w) + " x " + std::to_string(h) +
             " hexes; build the AI tables again";
    return false;
  }
  std::vector<int16_t> block(entries);
  if (!in.seek(at) || !in.read(block.data(), bytes)) {
    if (err) *err = "the AI file could not be read";
    return false;
  }
  for (int x = 0; x < w; ++x)
    for (int y = 0; y < h; ++y) field(x, y) = block[static_cast<size_t>(x) * h + y];
  return true;
}

void LoadAITable(MapState& s, int16_t x, int16_t y) {
  Document& d = s.doc;
  const std::string path = AIFilePath(s);
  if (!FileExists(path)) {
    s.MsgBox("Create objective file then try again");
    return;
  }
  d.HexAIDist.Allocate(d.W(), d.H());
  FileSource in;
  std::string err;
  if (!in.open(path, &err)) {
    s.MsgBox("The AI file " + path + " could not be opened: " + err + ".");
    return;
  }
  for (int i = 1; i <= d.ObjCount; ++i)
    if (d.ObjList(i, 0) == x && d.ObjList(i, 1) == y) {
      if (!ReadAIBlock(in, i, d.W(), d.H(), d.HexAIDist, &err)) {
        std::string text = "The AI file ";
        text += path;
        text += ": ";
        text += err;
        text += ".";
        s.MsgBox(text);
      }
      break;
    }
}

}  // namespace kv
