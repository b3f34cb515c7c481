#include "DbProxyEntity.h"

#include "Gi/GiRecorder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cmath>
#include <vector>

namespace {

/// Builds a graphics metafile by hand, command by command, as another application's writer
/// would, and remembers where each command ends.
class Metafile {
public:
  Metafile& begin(OdUInt32 opcode) {
    m_start = m_body.size();
    u32(0);
    u32(opcode);
    return *this;
  }
  /// Pads to 4 and fills in the size; sizeDelta makes the size field lie.
  Metafile& end(bool primitive, int sizeDelta = 0) {
    while (m_body.size() % 4 != 0)
      m_body.push_back(0);
    const OdUInt32 size = static_cast<OdUInt32>(m_body.size() - m_start) + sizeDelta;
    for (int i = 0; i < 4; ++i)
      m_body[m_start + i] = static_cast<OdUInt8>(size >> (8 * i));
    ++m_commands;
    if (primitive)
      m_primitiveEnds.push_back(8 + m_body.size());
    return *this;
  }
  Metafile& u32(OdUInt32 value) {
    for (int i = 0; i < 4; ++i)
      m_body.push_back(static_cast<OdUInt8>(value >> (8 * i)));
    return *this;
  }
  Metafile& real(double value) {
    OdUInt64 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    u32(static_cast<OdUInt32>(bits));
    return u32(static_cast<OdUInt32>(bits >> 32));
  }
  Metafile& point(double x, double y, double z = 0.0) { return real(x).real(y).real(z); }
  Metafile& text(const std::u16string& s) {
    for (char16_t c : s) {
      m_body.push_back(static_cast<OdUInt8>(c & 0xFF));
      m_body.push_back(static_cast<OdUInt8>(c >> 8));
    }
    m_body.push_back(0);
    m_body.push_back(0);
    return *this;
  }

  OdUInt8Array bytes() const {
    OdUInt8Array out;
    const OdUInt32 total = static_cast<OdUInt32>(8 + m_body.size());
    for (OdUInt32 v : {total, m_commands})
      for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<OdUInt8>(v >> (8 * i)));
    for (OdUInt8 b : m_body)
      out.push_back(b);
    return out;
  }
  /// Byte offsets (from the start of the metafile) at which each primitive command ends.
  const std::vector<std::size_t>& primitiveEnds() const { return m_primitiveEnds; }

private:
  std::vector<OdUInt8> m_body;
  std::size_t m_start = 0;
  OdUInt32 m_commands = 0;
  std::vector<std::size_t> m_primitiveEnds;
};

/// A polyline, a filled polygon, a circle, an arc, colours and a text, with an extents command.
Metafile sampleMetafile() {
  Metafile m;
  m.begin(1).point(-1, -2).point(10, 20).end(false);
  m.begin(14).u32(1).end(false);
  m.begin(6).u32(3).point(0, 0).point(4, 0).point(4, 3).end(true);
  m.begin(20).u32(1).end(false);
  m.begin(7).u32(3).point(1, 1).point(2, 1).point(2, 2).end(true);
  m.begin(20).u32(0).end(false);
  m.begin(22).u32(0xC2102030u).end(false);
  m.begin(2).point(5, 5).real(2.5).point(0, 0, 1).end(true);
  m.begin(23).u32(35).end(false);
  m.begin(4).point(0, 0).real(3).point(0, 0, 1).point(1, 0, 0).real(OdaPI / 2).u32(0).end(true);
  m.begin(99).u32(7).u32(8).end(false); // a command this platform does not know
  m.begin(36).point(1, 2).point(0, 0, 1).point(1, 0, 0);
  m.real(2.5).real(0.8).real(0.0).text(u"Hi 你好").end(true);
  return m;
}

TEST(ProxyEntityTest, ReplayDrawsTheMetafileIntoTheRecorder) {
  OdGiRecorder recorder;
  ASSERT_EQ(eOk, oddbReplayProxyGraphics(sampleMetafile().bytes(), &recorder));
  const std::vector<OdGiRecord>& r = recorder.records();
  ASSERT_EQ(5u, r.size());

  EXPECT_EQ(OdGiRecord::kPolyline, r[0].kind);
  ASSERT_EQ(3u, r[0].points.size());
  EXPECT_EQ(OdGePoint3d(4, 3, 0), r[0].points[2]);
  EXPECT_EQ(1, r[0].traits.color());
  EXPECT_EQ(kOdGiFillNever, r[0].traits.fillType());

  EXPECT_EQ(OdGiRecord::kPolygon, r[1].kind);
  EXPECT_EQ(OdGePoint3d(2, 2, 0), r[1].points[2]);
  EXPECT_EQ(kOdGiFillAlways, r[1].traits.fillType());

  EXPECT_EQ(OdGiRecord::kCircle, r[2].kind);
  EXPECT_EQ(OdGePoint3d(5, 5, 0), r[2].points[0]);
  EXPECT_EQ(2.5, r[2].radius);
  EXPECT_EQ(kOdGiFillNever, r[2].traits.fillType());
  EXPECT_TRUE(r[2].traits.trueColor().isByColor());
  EXPECT_EQ(0x10, r[2].traits.trueColor().red());
  EXPECT_EQ(0x30, r[2].traits.trueColor().blue());

  EXPECT_EQ(OdGiRecord::kArc, r[3].kind);
  EXPECT_EQ(3.0, r[3].radius);
  EXPECT_NEAR(OdaPI / 2, r[3].sweepAngle, 1e-12);
  EXPECT_NEAR(3.0, r[3].points[2].y, 1e-12); // the end point
  EXPECT_EQ(OdDb::kLnWt035, r[3].traits.lineWeight());

  EXPECT_EQ(OdGiRecord::kText, r[4].kind);
  EXPECT_EQ(OdString(u"Hi 你好"), r[4].text);
  EXPECT_EQ(OdGePoint3d(1, 2, 0), r[4].points[0]);
  EXPECT_EQ(2.5, r[4].height);
  EXPECT_EQ(0.8, r[4].width);
}

TEST(ProxyEntityTest, MalformedCommandsEndTheReplay) {
  const struct {
    const char* what;
    void (*bad)(Metafile&);
  } cases[] = {
      {"size below the points it announces",
       [](Metafile& m) { m.begin(6).u32(3).point(0, 0).point(1, 1).point(2, 2).end(true, -24); }},
      {"size past the end", [](Metafile& m) { m.begin(14).u32(1).end(false, 4096); }},
      {"size below the head", [](Metafile& m) { m.begin(14).u32(1).end(false, -8); }},
      {"negative count", [](Metafile& m) { m.begin(7).u32(0xFFFFFFFFu).point(0, 0).end(true); }},
      {"huge count", [](Metafile& m) { m.begin(6).u32(0x7FFFFFFFu).point(0, 0).end(true); }},
      {"text without its terminator",
       [](Metafile& m) {
         m.begin(36).point(0, 0).point(0, 0, 1).point(1, 0, 0).real(1).real(1).real(0);
         m.u32(0x00410041u).end(true);
       }},
      {"non-finite radius",
       [](Metafile& m) { m.begin(2).point(0, 0).real(NAN).point(0, 0, 1).end(true); }},
      {"matrix cut short", [](Metafile& m) { m.begin(29).real(1).real(0).end(false); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Metafile m;
    m.begin(2).point(0, 0).real(1).point(0, 0, 1).end(true);
    c.bad(m);
    m.begin(6).u32(2).point(0, 0).point(1, 1).end(true);
    OdGiRecorder recorder;
    EXPECT_EQ(eInvalidInput, oddbReplayProxyGraphics(m.bytes(), &recorder));
    ASSERT_EQ(1u, recorder.records().size());
    EXPECT_EQ(OdGiRecord::kCircle, recorder.records()[0].kind);
  }
}

} // namespace
