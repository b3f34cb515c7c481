#include "OdArray.h"

#include <gtest/gtest.h>

TEST(OdArrayAccess, OutOfRangeIndexThrows) {
  OdIntArray a{10, 20, 30};
  const OdIntArray& c = a;
  EXPECT_EQ(a[2], 30);
  EXPECT_EQ(c.getAt(0), 10);
  EXPECT_EQ(a.first(), 10);
  EXPECT_EQ(a.last(), 30);
  for (OdIntArray::size_type bad : {3u, 4u, 0xFFFFFFFFu}) {
    EXPECT_THROW(a[bad], OdError_InvalidIndex) << bad;
    EXPECT_THROW(c[bad], OdError_InvalidIndex) << bad;
    EXPECT_THROW(a.at(bad), OdError_InvalidIndex) << bad;
    EXPECT_THROW(c.getAt(bad), OdError_InvalidIndex) << bad;
    EXPECT_THROW(a.setAt(bad, 1), OdError_InvalidIndex) << bad;
    EXPECT_THROW(a.removeAt(bad), OdError_InvalidIndex) << bad;
    EXPECT_THROW(a.swap(0, bad), OdError_InvalidIndex) << bad;
  }
  EXPECT_EQ(a, (OdIntArray{10, 20, 30}));

  OdIntArray empty;
  EXPECT_THROW(empty.first(), OdError_InvalidIndex);
  EXPECT_THROW(empty.last(), OdError_InvalidIndex);
  EXPECT_THROW(empty.removeFirst(), OdError_InvalidIndex);
  EXPECT_THROW(empty.removeLast(), OdError_InvalidIndex);
}

TEST(OdArrayEdit, InsertAtAcceptsPositionsUpToTheLength) {
  OdIntArray a{1, 2};
  a.insertAt(0, 0);
  a.insertAt(3, 3); // at length(): appends
  a.insertAt(2, 9);
  EXPECT_EQ(a, (OdIntArray{0, 1, 9, 2, 3}));
  EXPECT_THROW(a.insertAt(6, 7), OdError_InvalidIndex);
  EXPECT_EQ(a.size(), 5u);
  OdIntArray empty;
  EXPECT_THROW(empty.insertAt(1, 7), OdError_InvalidIndex);
  empty.insertAt(0, 7);
  EXPECT_EQ(empty, (OdIntArray{7}));
}

TEST(OdArrayEdit, RemoveSubArrayIsInclusiveAndChecked) {
  struct Case {
    OdIntArray::size_type start, end;
    bool throws;
    OdIntArray expected;
  };
  const Case cases[] = {
      {1, 2, false, {0, 3, 4}},      {0, 4, false, {}},
      {4, 4, false, {0, 1, 2, 3}},   {0, 0, false, {1, 2, 3, 4}},
      {2, 1, true, {0, 1, 2, 3, 4}}, {3, 5, true, {0, 1, 2, 3, 4}},
      {5, 5, true, {0, 1, 2, 3, 4}},
  };
  for (const Case& c : cases) {
    OdIntArray a{0, 1, 2, 3, 4};
    if (c.throws)
      EXPECT_THROW(a.removeSubArray(c.start, c.end), OdError_InvalidIndex) << c.start;
    else
      a.removeSubArray(c.start, c.end);
    EXPECT_EQ(a, c.expected) << c.start << ".." << c.end;
  }
}

TEST(OdArrayEdit, FindAndRemoveFromAStartIndex) {
  OdStringArray a{OdString(u"a"), OdString(u"坐标"), OdString(u"a")};
  OdStringArray::size_type at = 99;
  EXPECT_TRUE(a.find(OdString(u"a"), at));
  EXPECT_EQ(at, 0u);
  EXPECT_TRUE(a.find(OdString(u"a"), at, 1));
  EXPECT_EQ(at, 2u);
  at = 99;
  EXPECT_FALSE(a.find(OdString(u"x"), at));
  EXPECT_EQ(at, 99u); // untouched when nothing is found
  EXPECT_FALSE(a.find(OdString(u"a"), at, 3));
  EXPECT_FALSE(a.contains(OdString(u"坐标"), 2));

  EXPECT_TRUE(a.remove(OdString(u"a"), 1));
  EXPECT_EQ(a, (OdStringArray{OdString(u"a"), OdString(u"坐标")}));
  EXPECT_FALSE(a.remove(OdString(u"x")));
  EXPECT_FALSE(a.remove(OdString(u"a"), 10));
  EXPECT_EQ(a.size(), 2u);
}

TEST(OdArrayEdit, LengthsAndBulkChanges) {
  OdIntArray a;
  a.setLogicalLength(3);
  EXPECT_EQ(a, (OdIntArray{0, 0, 0}));
  a.setAll(4).setAt(1, 5);
  EXPECT_EQ(a, (OdIntArray{4, 5, 4}));
  a.setPhysicalLength(2);
  EXPECT_EQ(a, (OdIntArray{4, 5}));
  EXPECT_GE(a.physicalLength(), 2u);
  a.append(OdIntArray{6, 7}).reverse();
  EXPECT_EQ(a, (OdIntArray{7, 6, 5, 4}));
  EXPECT_EQ(a.append(8), 4u);
  a.swap(0, 4);
  EXPECT_EQ(a, (OdIntArray{8, 6, 5, 4, 7}));
}
