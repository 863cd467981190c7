// One-step scrolls through the scroll bars give the picture of a full redraw,
// pixel for pixel, after any sequence of steps; the contour codes are
// refreshed only for the hexes the step itself draws.
#include <random>
#include <set>
#include <utility>

#include <gtest/gtest.h>

#include "renderkit.h"
#include "view/render_api.h"
#include "view/scrollfill.h"
#include "view/scrolling.h"
#include "view/zoomgrid.h"

using namespace kv;
using namespace kvtest;

namespace {

// A busy map: tiles, elevations that make contours, flags of every kind,
// railroads and deployment hexes, on the default overlapping geometry.
void MakeBusy(RenderSession& r) {
  Document& d = r.s.doc;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) {
      d.HexTile(x, y) = static_cast<int16_t>((x * 5 + y * 3) % 64);
      d.HexElev(x, y) = static_cast<uint8_t>(120 + (x * 3 + y * 5) % 7);
      if ((x + y) % 5 == 0) {
        d.HexCtl(x, y, 0) = static_cast<uint8_t>(1 + x % 3);
        d.HexCtl(x, y, 1) = static_cast<uint8_t>(y % 4);
      }
      if ((x * y) % 4 == 1) d.HexInfo(x, y, 1 + x % 6) = 2;
      if ((x + 2 * y) % 7 == 0) d.HexDeploy(x, y) = static_cast<int16_t>(1 + y % 3);
    }
  // The knock-out mask keeps the corners of the cell, as a hexagon does: the
  // triangles that a neighbouring column fills.
  Bitmap& k = r.s.sprites.BlackHexDC;
  const int W = r.s.ref.HexW, H = r.s.ref.HexH, inset = r.s.ref.HexInset;
  k.Fill(0);
  for (int y = 0; y < H; ++y) {
    const int edge = inset * std::abs(2 * y - H + 1) / H;  // slanted sides
    for (int x = 0; x < edge; ++x) {
      k.SetPixel(x, y, 0xFFFFFF);
      k.SetPixel(W - 1 - x, y, 0xFFFFFF);
    }
  }
  for (int t = 0; t < 64; ++t)
    for (int y = 0; y < H; ++y)
      for (int x = 0; x < W; ++x)
        if (k.GetPixel(x, y)) r.s.sprites.TileSheet.SetPixel((t % 16) * W + x, (t / 16) * H + y, 0);
}

void Step(Session& s, Bar bar, int delta) {
  const ScrollBarModel& b = bar == Bar::H ? s.view.HScroll1 : s.view.VScroll1;
  SetScrollValue(s, bar, b.Value + delta);
}

}  // namespace

TEST(ScrollPicture, TheReportedCornersAreGone) {
  // Right, Right, Down, Down from the start; and one step right from (1, 1).
  for (int start : {0, 1}) {
    SCOPED_TRACE(start);
    RenderSession r(40, 30);
    MakeBusy(r);
    Session& s = r.s;
    r.SetView(12, 8, start, start);
    RedrawBuffers(s);
    if (start == 0) {
      Step(s, Bar::H, 1);
      Step(s, Bar::H, 1);
      Step(s, Bar::V, 1);
      Step(s, Bar::V, 1);
    } else {
      Step(s, Bar::H, 1);
    }
    const Bitmap scrolled = s.sprites.Picture1;
    RedrawBuffers(s);
    EXPECT_TRUE(scrolled == s.sprites.Picture1);
  }
}

TEST(ScrollPicture, RandomStepsAtSeveralSizesEqualAFullRedraw) {
  struct Case {
    int cols, rows, vx, vy;
    bool grid, outlines;
  };
  // Odd and even first columns and rows, views that reach the map's edges,
  // the grid and the outlines.
  const Case cases[] = {{8, 6, 0, 0, false, false}, {9, 7, 3, 2, true, false},     {12, 5, 4, 5, false, true},
                        {5, 9, 7, 1, true, true},   {15, 11, 10, 8, false, false}, {3, 2, 1, 1, false, false}};
  std::mt19937 rng(2611);
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.cols << "x" << c.rows << " at " << c.vx << "," << c.vy);
    // The session that scrolls, and a twin that redraws in full for comparison.
    RenderSession r(26, 20), twin(26, 20);
    for (RenderSession* t : {&r, &twin}) {
      MakeBusy(*t);
      t->s.pens.GridOn = c.grid ? -1 : 0;
      t->s.pens.GridX = 4;
      t->s.pens.GridY = 3;
      t->s.pens.HexOutlines = c.outlines ? -1 : 0;
      t->SetView(c.cols, c.rows, c.vx, c.vy);
    }
    Session& s = r.s;
    RedrawBuffers(s);
    // Contour codes the full redraw wrote are marked, so that what the steps
    // write shows.
    Document& d = s.doc;
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y) d.HexContour(x, y) = 200;
    std::set<std::pair<int, int>> drawnBySteps;
    for (int n = 0; n < 60; ++n) {
      const Bar bar = rng() % 2 ? Bar::H : Bar::V;
      const int delta = rng() % 2 ? 1 : -1;
      const ScrollBarModel& b = bar == Bar::H ? s.view.HScroll1 : s.view.VScroll1;
      if (b.Value + delta < b.Min || b.Value + delta > b.Max) continue;
      Step(s, bar, delta);
      // The hexes the classic step draws (and so refreshes): the column or
      // row that came in, rows or columns from the view's origin to its end.
      const ViewState& v = s.view;
      const int xEnd = std::min<int>(v.ViewCols + v.ViewX + 1, d.MapMaxX);
      const int yEnd = std::min<int>(v.ViewRows + v.ViewY + 1, d.MapMaxY);
      if (bar == Bar::H)
        for (int y = v.ViewY; y <= yEnd; ++y) drawnBySteps.insert({delta > 0 ? xEnd : v.ViewX, y});
      else
        for (int x = v.ViewX; x <= xEnd; ++x) drawnBySteps.insert({x, delta > 0 ? yEnd : v.ViewY});
      const Bitmap& scrolled = s.sprites.Picture1;
      twin.s.view.ViewX = v.ViewX;
      twin.s.view.ViewY = v.ViewY;
      RedrawBuffers(twin.s);
      const Bitmap& full = twin.s.sprites.Picture1;
      ASSERT_EQ(scrolled.Width(), full.Width());
      for (int py = 0; py < full.Height(); ++py)
        for (int px = 0; px < full.Width(); ++px)
          ASSERT_EQ(scrolled.GetPixel(px, py), full.GetPixel(px, py))
              << "step " << n << " at view " << v.ViewX << "," << v.ViewY << ", view pixel " << px << "," << py;
    }
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y)
        ASSERT_EQ(d.HexContour(x, y) != 200, drawnBySteps.count({x, y}) == 1) << "hex " << x << "," << y;
    EXPECT_FALSE(drawnBySteps.empty());
  }
}

TEST(ScrollPicture, AFullRedrawRefreshesTheContoursOfItsRangeOnly) {
  // The contour codes go into the map file: a full redraw refreshes those of
  // the columns from one left of the view to one right of its last, and the
  // rows from two above to one below, and no others.
  for (int start : {0, 1, 4}) {
    SCOPED_TRACE(start);
    RenderSession r(30, 24);
    MakeBusy(r);
    Session& s = r.s;
    r.SetView(9, 7, start, start);
    Document& d = s.doc;
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y) d.HexContour(x, y) = 200;
    RedrawBuffers(s);
    const ViewState& v = s.view;
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y) {
        const bool inRange = x >= v.ViewX - 1 && x <= v.ViewX + 9 + 1 && y >= v.ViewY - 2 && y <= v.ViewY + 7 + 1;
        ASSERT_EQ(d.HexContour(x, y) != 200, inRange) << "hex " << x << "," << y;
      }
  }
}

TEST(ScrollPicture, RecomposingARectangleTouchesNothingOutsideIt) {
  for (int zoom : {100, 50, 150}) {
    SCOPED_TRACE(zoom);
    RenderSession r(20, 14);
    MakeBusy(r);
    Session& s = r.s;
    s.view.Zoom = static_cast<int16_t>(zoom);
    r.SetView(8, 6, 1, 1);
    RedrawBuffers(s);
    const Bitmap full = s.sprites.BufDC;
    const auto contours = s.doc.HexContour;
    // Spoil the buffer, then recompose one rectangle of it.
    s.sprites.BufDC.Fill(0x123456);
    RecomposeBufferRect(s, {70, 40, 130, 90});
    for (int y = 0; y < full.Height(); ++y)
      for (int x = 0; x < full.Width(); ++x) {
        const bool inside = x >= 70 && x < 200 && y >= 40 && y < 130;
        ASSERT_EQ(s.sprites.BufDC.GetPixel(x, y), inside ? full.GetPixel(x, y) : 0x123456u) << x << "," << y;
      }
    EXPECT_TRUE(s.doc.HexContour == contours);
  }
}

TEST(ZoomedView, IsTheFullSizePictureSampledOnTheZoomedGrid) {
  // Composed at the zoom's own size, every pixel of the view is the pixel of
  // the full-size picture that the zoomed grid puts there: no sprite falls a
  // pixel off, no seam opens between hexes, whatever the view's origin.
  for (int zoom : {25, 33, 50, 67, 75, 125, 175, 200}) {
    for (int origin : {0, 3}) {
      SCOPED_TRACE(testing::Message() << zoom << " % from " << origin);
      RenderSession r(30, 24);
      MakeBusy(r);
      Session& s = r.s;
      s.pens.HexOutlines = -1;
      // Tiles beyond the sheet: the mask knocks the hexagon out, no sprite fills it.
      s.doc.HexTile(5, 6) = 70;
      s.doc.HexTile(6, 8) = 200;
      s.pens.GridOn = -1;
      s.pens.GridX = 4;
      s.pens.GridY = 3;
      r.SetView(14, 10, origin, origin + 1);
      RedrawBuffers(s);
      const Bitmap full = s.sprites.BufDC;
      s.view.Zoom = static_cast<int16_t>(zoom);
      r.SetView(14, 10, origin, origin + 1);
      RedrawBuffers(s);
      const Bitmap& pic = s.sprites.Picture1;
      const ZoomGrid g(s.ref, s.view);
      // A column is the pitch at the zoom in whole pixels; so is a row.
      EXPECT_EQ(g.sx.num, (45 * zoom + 50) / 100);
      EXPECT_EQ(g.sy.num, (50 * zoom + 50) / 100);
      ASSERT_EQ(pic.Width(), (s.view.ViewPixW * g.sx.num + 44) / 45);
      ASSERT_EQ(pic.Height(), (s.view.ViewPixH * g.sy.num + 49) / 50);
      const int64_t bx = int64_t{origin - 1} * s.ref.ColPitch, by = int64_t{origin} * s.ref.RowPitch;
      for (int y = 0; y < pic.Height(); ++y)
        for (int x = 0; x < pic.Width(); ++x) {
          const auto fx = static_cast<int>(g.sx.MapOf(g.viewGX + x) - bx);
          const auto fy = static_cast<int>(g.sy.MapOf(g.viewGY + y) - by);
          ASSERT_EQ(pic.GetPixel(x, y), full.GetPixel(fx, fy)) << "view pixel " << x << "," << y;
        }
    }
  }
}

TEST(ZoomedView, RandomStepsEqualAFullRedrawAtEveryZoom) {
  struct Case {
    int zoom, cols, rows, vx, vy;
  };
  const Case cases[] = {{25, 9, 7, 3, 2}, {33, 12, 5, 4, 5}, {67, 5, 9, 7, 1}, {150, 8, 6, 0, 0}, {200, 3, 2, 1, 1}};
  std::mt19937 rng(977);
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.zoom << " %, " << c.cols << "x" << c.rows << " at " << c.vx << "," << c.vy);
    RenderSession r(26, 20), twin(26, 20);
    for (RenderSession* t : {&r, &twin}) {
      MakeBusy(*t);
      t->s.pens.GridOn = -1;
      t->s.pens.GridX = 4;
      t->s.pens.GridY = 3;
      t->s.view.Zoom = static_cast<int16_t>(c.zoom);
      t->SetView(c.cols, c.rows, c.vx, c.vy);
    }
    Session& s = r.s;
    RedrawBuffers(s);
    int steps = 0;
    for (int n = 0; n < 60; ++n) {
      const Bar bar = rng() % 2 ? Bar::H : Bar::V;
      const int delta = rng() % 2 ? 1 : -1;
      const ScrollBarModel& b = bar == Bar::H ? s.view.HScroll1 : s.view.VScroll1;
      if (b.Value + delta < b.Min || b.Value + delta > b.Max) continue;
      Step(s, bar, delta);
      ++steps;
      twin.s.view.ViewX = s.view.ViewX;
      twin.s.view.ViewY = s.view.ViewY;
      RedrawBuffers(twin.s);
      ASSERT_TRUE(s.sprites.Picture1 == twin.s.sprites.Picture1)
          << "step " << n << " at view " << s.view.ViewX << "," << s.view.ViewY;
    }
    EXPECT_GT(steps, 20);
  }
}
