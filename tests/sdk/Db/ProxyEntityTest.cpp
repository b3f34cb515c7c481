#include "DbProxyEntity.h"

#include "DbDatabase.h"
#include "Gi/GiProxyGraphicsWriter.h"
#include "Gi/GiRecorder.h"
#include "OdError.h"
#include "RxDictionary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
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
  m.begin(36)
      .point(1, 2)
      .point(0, 0, 1)
      .point(1, 0, 0)
      .real(2.5)
      .real(0.8)
      .real(0.0)
      .text(u"Hi 你好")
      .end(true);
  return m;
}

OdDbProxyData sampleParts() {
  OdDbProxyData parts;
  parts.setOriginalClassName(OD_T("CustEntsThing"));
  parts.setOriginalDxfName(OD_T("CUSTENTSTHING"));
  parts.setApplicationDescription(OD_T("CustEnts|Product Desc:     CustEnts"));
  parts.setProxyFlags(OdDbProxyEntity::kEraseAllowed | OdDbProxyEntity::kCloningAllowed |
                      OdDbProxyEntity::kDisableProxyWarning);
  parts.setVersion(33, 109);
  parts.setData(OdUInt8Array{0x12, 0x34, 0x56, 0x80}, 25);
  parts.setStrings(OdUInt8Array{0x00, 0x01, 0x41, 0x00, 0xC0}, 34);
  parts.setReferences(OdDbProxyReferenceArray{{2, OdDbHandle(0x2A)},
                                              {3, OdDbHandle(0x1234567890ull)},
                                              {4, OdDbHandle(0x1F)},
                                              {5, OdDbHandle()}});
  parts.setGraphicsMetafile(sampleMetafile().bytes());
  return parts;
}

class ProxyEntityTest : public ::testing::Test {};

TEST_F(ProxyEntityTest, RegisteredWithDxfNames) {
  OdRxClass* entity = odrxGetClass(OD_T("OdDbProxyEntity"));
  OdRxClass* object = odrxGetClass(OD_T("OdDbProxyObject"));
  ASSERT_NE(nullptr, entity);
  ASSERT_NE(nullptr, object);
  EXPECT_EQ(OdDbEntity::desc(), entity->myParent());
  EXPECT_EQ(OdDbObject::desc(), object->myParent());
  EXPECT_EQ(OdString(OD_T("ACAD_PROXY_ENTITY")), entity->dxfName());
  EXPECT_EQ(OdString(OD_T("ACAD_PROXY_OBJECT")), object->dxfName());
  EXPECT_EQ(0xBFFu, static_cast<OdUInt32>(OdDbProxyEntity::kAllAllowedBits));
}

TEST_F(ProxyEntityTest, PartsSurviveCloneByteForByte) {
  const OdDbProxyData parts = sampleParts();
  OdDbProxyEntityPtr entity = OdDbProxyEntity::createObject();
  entity->setProxyData(parts);
  entity->setColorIndex(3);
  entity->setLineWeight(OdDb::kLnWt035);
  OdDbProxyEntityPtr copy = OdDbProxyEntity::cast(entity->clone());
  ASSERT_FALSE(copy.isNull());
  EXPECT_TRUE(copy->proxyData() == parts);
  EXPECT_EQ(OdString(OD_T("CustEntsThing")), copy->originalClassName());
  EXPECT_EQ(OdString(OD_T("CUSTENTSTHING")), copy->originalDxfName());
  EXPECT_EQ(parts.applicationDescription(), copy->applicationDescription());
  EXPECT_EQ(0x481u, copy->proxyFlags());
  EXPECT_EQ(109, copy->proxyData().maintenanceVersion());
  EXPECT_EQ(25u, copy->proxyData().dataBitSize());
  EXPECT_EQ(34u, copy->proxyData().stringBitSize());
  EXPECT_EQ(OdDbHandle(0x1234567890ull), copy->proxyData().references()[1].handle);
  EXPECT_EQ(3, copy->colorIndex());
  EXPECT_EQ(OdDb::kLnWt035, copy->lineWeight());

  OdDbProxyObjectPtr object = OdDbProxyObject::createObject();
  object->setProxyData(parts);
  OdDbProxyObjectPtr objectCopy = OdDbProxyObject::cast(object->clone());
  ASSERT_FALSE(objectCopy.isNull());
  EXPECT_TRUE(objectCopy->proxyData() == parts);

  // Each part matters to the comparison the test relies on.
  OdDbProxyData changed = parts;
  changed.setData(parts.data(), 24);
  EXPECT_FALSE(changed == parts);
}

TEST_F(ProxyEntityTest, SettersRefuseInconsistentParts) {
  OdDbProxyData parts = sampleParts();
  const OdDbProxyData before = parts;
  EXPECT_THROW(parts.setProxyFlags(0x1000), OdError);
  EXPECT_THROW(parts.setData(OdUInt8Array{1, 2}, 17), OdError);
  EXPECT_THROW(parts.setStrings(OdUInt8Array(), 1), OdError);
  EXPECT_THROW(parts.setVersion(-1, 0), OdError);
  EXPECT_THROW(parts.setReferences(OdDbProxyReferenceArray{{2, OdDbHandle(1)}, {6, OdDbHandle(2)}}),
               OdError);
  EXPECT_THROW(parts.setReferences(OdDbProxyReferenceArray{{0, OdDbHandle(1)}}), OdError);
  EXPECT_TRUE(parts == before);
  parts.setProxyFlags(OdDbProxyEntity::kAllAllowedBits | OdDbProxyEntity::kDisableProxyWarning);
  parts.setData(OdUInt8Array{1, 2}, 16);
  EXPECT_EQ(16u, parts.dataBitSize());
}

TEST_F(ProxyEntityTest, ReplayDrawsTheMetafileIntoTheRecorder) {
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

TEST_F(ProxyEntityTest, MetafileCutShortDrawsOnlyWholeCommands) {
  const Metafile m = sampleMetafile();
  const OdUInt8Array full = m.bytes();
  for (std::size_t cut = 0; cut < full.size(); ++cut) {
    SCOPED_TRACE(cut);
    OdUInt8Array part;
    for (std::size_t i = 0; i < cut; ++i)
      part.push_back(full[static_cast<OdUInt32>(i)]);
    OdGiRecorder recorder;
    const OdResult result = oddbReplayProxyGraphics(part, &recorder);
    std::size_t whole = 0;
    for (std::size_t end : m.primitiveEnds())
      whole += end <= cut ? 1 : 0;
    EXPECT_EQ(whole, recorder.records().size());
    EXPECT_EQ(cut == 0 ? eOk : eInvalidInput, result);
    EXPECT_EQ(0u, recorder.modelTransformDepth());
  }
}

TEST_F(ProxyEntityTest, MalformedCommandsEndTheReplay) {
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
       [](Metafile& m) {
         m.begin(2)
             .point(0, 0)
             .real(std::numeric_limits<double>::quiet_NaN())
             .point(0, 0, 1)
             .end(true);
       }},
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

TEST_F(ProxyEntityTest, MatricesApplyUntilPoppedAndNeverLeak) {
  Metafile m;
  m.begin(29);
  const double rowMajor[16] = {1, 0, 0, 10, 0, 1, 0, 20, 0, 0, 1, 30, 0, 0, 0, 1};
  for (double v : rowMajor)
    m.real(v);
  m.end(false);
  m.begin(6).u32(1).point(1, 2, 3).end(true);
  m.begin(31).end(false);
  m.begin(31).end(false); // one pop too many: the session's own transform stays
  m.begin(6).u32(1).point(1, 2, 3).end(true);
  m.begin(29);
  for (double v : rowMajor)
    m.real(v);
  m.end(false); // never popped

  OdGiRecorder recorder;
  OdGeMatrix3d session;
  session.setToTranslation(OdGeVector3d(100, 0, 0));
  recorder.pushModelTransform(session);
  ASSERT_EQ(eOk, oddbReplayProxyGraphics(m.bytes(), &recorder));
  ASSERT_EQ(2u, recorder.records().size());
  EXPECT_EQ(OdGePoint3d(111, 22, 33), recorder.records()[0].points[0]);
  EXPECT_EQ(OdGePoint3d(101, 2, 3), recorder.records()[1].points[0]);
  EXPECT_EQ(1u, recorder.modelTransformDepth());
}

TEST_F(ProxyEntityTest, ReplayMatchesWhatTheWriterWasGiven) {
  auto drawSample = [](OdGiWorldGeometry& sink) {
    const OdGePoint3d pts[3] = {OdGePoint3d(0, 0, 0), OdGePoint3d(3, 1, 0), OdGePoint3d(5, 5, 0)};
    sink.polyline(3, pts);
    sink.circle(OdGePoint3d(1, 1, 0), 2.0, OdGeVector3d::kZAxis);
    sink.circularArc(OdGePoint3d(0, 0, 0), 1.5, OdGeVector3d::kZAxis, OdGeVector3d::kXAxis, 1.0);
    sink.text(OdGePoint3d(2, 2, 0), OdGeVector3d::kZAxis, OdGeVector3d::kYAxis, 1.0, 1.0, 0.0,
              OD_T("Label"));
  };
  OdGiProxyGraphicsWriter writer;
  OdGiRecorder direct;
  drawSample(writer);
  drawSample(direct);
  OdGiRecorder replayed;
  ASSERT_EQ(eOk, oddbReplayProxyGraphics(writer.data(), &replayed));
  ASSERT_EQ(direct.records().size(), replayed.records().size());
  for (std::size_t i = 0; i < direct.records().size(); ++i) {
    SCOPED_TRACE(i);
    const OdGiRecord& a = direct.records()[i];
    const OdGiRecord& b = replayed.records()[i];
    EXPECT_EQ(a.kind, b.kind);
    EXPECT_EQ(a.points, b.points);
    EXPECT_EQ(a.radius, b.radius);
    EXPECT_EQ(a.text, b.text);
  }
}

TEST_F(ProxyEntityTest, EntityDrawsButRefusesChanges) {
  OdDbProxyEntityPtr entity = OdDbProxyEntity::createObject();
  EXPECT_EQ(OdDbProxyEntity::kNoMetafile, entity->graphicsMetafileType());
  OdGeExtents3d box;
  EXPECT_EQ(eInvalidExtents, entity->getGeomExtents(box));

  const OdDbProxyData parts = sampleParts();
  entity->setProxyData(parts);
  EXPECT_EQ(OdDbProxyEntity::kFullGraphics, entity->graphicsMetafileType());
  OdGiRecorder recorder;
  EXPECT_TRUE(entity->worldDraw(&recorder));
  EXPECT_EQ(5u, recorder.records().size());

  // The extents command wins over the primitives' own box.
  ASSERT_EQ(eOk, entity->getGeomExtents(box));
  EXPECT_EQ(OdGePoint3d(-1, -2, 0), box.minPoint());
  EXPECT_EQ(OdGePoint3d(10, 20, 0), box.maxPoint());

  OdGeMatrix3d move;
  move.setToTranslation(OdGeVector3d(1, 0, 0));
  EXPECT_EQ(eNotApplicable, entity->transformBy(move));
  OdRxObjectPtrArray pieces;
  EXPECT_EQ(eNotApplicable, entity->explode(pieces));
  EXPECT_TRUE(pieces.isEmpty());
  EXPECT_TRUE(entity->proxyData() == parts);

  // Without an extents command the primitives give the box.
  Metafile noExtents;
  noExtents.begin(6).u32(2).point(-3, 1).point(2, 7).end(true);
  OdDbProxyData drawn = parts;
  drawn.setGraphicsMetafile(noExtents.bytes());
  entity->setProxyData(drawn);
  ASSERT_EQ(eOk, entity->getGeomExtents(box));
  EXPECT_EQ(OdGePoint3d(-3, 1, 0), box.minPoint());
  EXPECT_EQ(OdGePoint3d(2, 7, 0), box.maxPoint());

  Metafile onlyExtents;
  onlyExtents.begin(1).point(0, 0).point(1, 1).end(false);
  drawn.setGraphicsMetafile(onlyExtents.bytes());
  entity->setProxyData(drawn);
  EXPECT_EQ(OdDbProxyEntity::kBoundingBox, entity->graphicsMetafileType());
}

TEST_F(ProxyEntityTest, LayerAndLinetypeIndicesFollowTheDrawingsTables) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  Metafile m;
  m.begin(16).u32(0).end(false);
  m.begin(18).u32(2).end(false); // ByBlock, ByLayer, Continuous
  m.begin(6).u32(1).point(0, 0).end(true);
  m.begin(16).u32(55).end(false); // beyond the table: unchanged
  m.begin(18).u32(32767).end(false);
  m.begin(6).u32(1).point(0, 0).end(true);
  OdGiRecorder recorder;
  ASSERT_EQ(eOk, oddbReplayProxyGraphics(m.bytes(), &recorder, db));
  ASSERT_EQ(2u, recorder.records().size());
  EXPECT_EQ(static_cast<OdDbStub*>(db->getLayerZeroId()), recorder.records()[0].traits.layer());
  EXPECT_EQ(static_cast<OdDbStub*>(db->getLinetypeContinuousId()),
            recorder.records()[0].traits.lineType());
  EXPECT_EQ(static_cast<OdDbStub*>(db->getLayerZeroId()), recorder.records()[1].traits.layer());
  EXPECT_EQ(static_cast<OdDbStub*>(db->getLinetypeByLayerId()),
            recorder.records()[1].traits.lineType());
}

} // namespace
