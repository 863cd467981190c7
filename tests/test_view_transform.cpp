// The view transform: a click in the middle of a hex finds that hex at every
// view position and zoom, the edges clamp to the map, and the buffer and the
// view surface stand where the drawing expects them.
#include <gtest/gtest.h>

#include "refdata/refdata.h"
#include "view/geometry.h"
#include "view/transform.h"
#include "view/viewstate.h"

using namespace kv;

namespace {

ViewState View(int vx, int vy, int cols = 12, int rows = 8, int zoom = 100) {
  ViewState v;
  v.ViewX = vx;
  v.ViewY = vy;
  v.ViewCols = static_cast<int16_t>(cols);
  v.ViewRows = static_cast<int16_t>(rows);
  v.Zoom = static_cast<int16_t>(zoom);
  return v;
}

TEST(ViewTransform, TheMiddleOfEveryVisibleHexIsThatHexAtEveryZoom) {
  RefData ref;  // pitches 45 and 50
  for (int zoom : {100, 50, 25, 200, 133})
    for (int vx : {0, 1, 7})
      for (int vy : {0, 3}) {
        const ViewState v = View(vx, vy, 12, 8, zoom);
        const ViewTransform t(ref, v);
        EXPECT_EQ(t.Zoom(), zoom);
        for (int x = vx; x <= vx + 12; ++x)
          for (int y = vy; y <= vy + 8; ++y) {
            double X = 0, Y = 0;
            t.HexCentre(x, y, X, Y);
            int16_t hx = -1, hy = -1;
            t.HexAt(X, Y, 100, 100, hx, hy);
            ASSERT_EQ(hx, x) << "zoom " << zoom << " view " << vx << "," << vy << " hex " << x << "," << y;
            ASSERT_EQ(hy, y) << "zoom " << zoom << " view " << vx << "," << vy << " hex " << x << "," << y;
          }
      }
}

TEST(ViewTransform, AtFullSizeAViewPixelIsAMapPixelShiftedByTheView) {
  RefData ref;
  const ViewTransform t(ref, View(2, 3));
  int32_t mx = 0, my = 0;
  t.ViewToMap(10.5, 20.5, mx, my);  // halves to even
  EXPECT_EQ(mx, 10 + 2 * 45);
  EXPECT_EQ(my, 20 + 3 * 50);
  double X = 0, Y = 0;
  t.MapToView(mx, my, X, Y);
  EXPECT_EQ(X, 10);
  EXPECT_EQ(Y, 20);
  // Hex (3, 4) in the middle of its cell: an odd column, so no half-row shift.
  t.HexCentre(3, 4, X, Y);
  EXPECT_EQ(X, 3 * 45 + 22 - 2 * 45);
  EXPECT_EQ(Y, 4 * 50 + 25 - 3 * 50);
  // The buffer starts one hex up and to the left of the view.
  EXPECT_EQ(t.BufferLeft(200), 200 - 45);
  EXPECT_EQ(t.BufferTop(300), 300 - 2 * 50);
  EXPECT_EQ(t.ViewLeft(200), 200 - 2 * 45);
  EXPECT_EQ(t.ViewTop(300), 300 - 3 * 50);
  EXPECT_EQ(t.Visible(), (HexRect{2, 3, 14, 11}));
}

TEST(ViewTransform, HalfZoomShowsTwiceTheMapAndPointsOffTheMapClamp) {
  RefData ref;
  const ViewTransform half(ref, View(0, 0, 12, 8, 50));
  int32_t mx = 0, my = 0;
  // At 50 % a column is 23 pixels (45 / 2, to whole pixels), a row 25: view
  // pixel 100 shows map pixel 100 * 45 / 23 = 195.6, row pixel 60 shows 120.
  half.ViewToMap(100, 60, mx, my);
  EXPECT_EQ(mx, 195);
  EXPECT_EQ(my, 120);
  // A column further on, the same point shows the same point of the next column.
  const ViewTransform next(ref, View(1, 0, 12, 8, 50));
  int32_t nx = 0, ny = 0;
  next.ViewToMap(100, 60, nx, ny);
  EXPECT_EQ(nx, mx + 45);
  int16_t x = 0, y = 0;
  half.HexAt(-500, -500, 20, 10, x, y);
  EXPECT_EQ(x, 0);
  EXPECT_EQ(y, 0);
  half.HexAt(1e7, 1e7, 20, 10, x, y);
  EXPECT_EQ(x, 20);
  EXPECT_EQ(y, 10);
  // A zoom of 0 (never set) counts as full size.
  EXPECT_EQ(ViewTransform(ref, View(0, 0, 12, 8, 0)).Zoom(), 100);
}

TEST(ViewTransform, PointsBeyondTheIntegerRangeClampToTheirOwnSide) {
  // A script can put the view or a point anywhere: at full size a point far
  // beyond 32 bits stays on its own side of the map, the nearest edge.
  RefData ref;
  const ViewTransform t(ref, View(0, 0));
  int32_t mx = 0, my = 0;
  t.ViewToMap(-1e12, 1e12, mx, my);
  EXPECT_EQ(mx, -2000000000);
  EXPECT_EQ(my, 2000000000);
  int16_t x = -1, y = -1;
  t.HexAt(-1e12, -1e12, 20, 10, x, y);
  EXPECT_EQ(x, 0);
  EXPECT_EQ(y, 0);
  t.HexAt(1e12, 1e12, 20, 10, x, y);
  EXPECT_EQ(x, 20);
  EXPECT_EQ(y, 10);
}

}  // namespace
