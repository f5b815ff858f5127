#include "services/xml/XMLNodeData.h"

#include <gtest/gtest.h>

#include <cstring>

#include "heap_TrackerTestKit.h"

using namespace TestSuite;

namespace {

XMLNodeData* makeNode(const char* name, int children) {
  SXMLNodeLayout layout;
  layout.iChildCount = children;
  layout.iTextCount = 1;
  layout.iAttributeCount = 1;
  layout.uiTextBytes = std::strlen(name) + 1;
  char* area = nullptr;
  XMLNodeData* node = XMLNodeDataCreate(layout, &area);
  std::memcpy(area, name, layout.uiTextBytes);
  node->sName = area;
  node->pTexts[0] = area;
  node->pAttributes[0] = {area, nullptr};
  return node;
}

}  // namespace

TEST(XMLNodeData, OneBlockHoldsArraysAndTexts) {
  SXMLNodeLayout layout;
  layout.iChildCount = 2;
  layout.iTextCount = 3;
  layout.iClearCount = 1;
  layout.iAttributeCount = 4;
  layout.uiTextBytes = 10;
  char* area = nullptr;
  XMLNodeData* node = XMLNodeDataCreate(layout, &area);
  ASSERT_NE(node, nullptr);
  const char* block = reinterpret_cast<const char*>(node);
  EXPECT_EQ(reinterpret_cast<const char*>(node->pChildren), block + sizeof(XMLNodeData));
  EXPECT_EQ(reinterpret_cast<const char*>(node->pTexts), reinterpret_cast<const char*>(node->pChildren + 2));
  EXPECT_EQ(reinterpret_cast<const char*>(node->pClears), reinterpret_cast<const char*>(node->pTexts + 3));
  EXPECT_EQ(reinterpret_cast<const char*>(node->pAttributes), reinterpret_cast<const char*>(node->pClears + 1));
  EXPECT_EQ(area, reinterpret_cast<const char*>(node->pAttributes + 4));
  EXPECT_EQ(node->iRefCount, 1);
  EXPECT_EQ(node->iTextCount, 3);
  node->iChildCount = 0;  // no children were wired in
  XMLNodeDataRelease(node);
}

TEST(XMLNodeData, EmptyArraysAreNull) {
  char* area = nullptr;
  XMLNodeData* node = XMLNodeDataCreate(SXMLNodeLayout(), &area);
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->pChildren, nullptr);
  EXPECT_EQ(node->pTexts, nullptr);
  EXPECT_EQ(node->pClears, nullptr);
  EXPECT_EQ(node->pAttributes, nullptr);
  XMLNodeDataRelease(node);
}

TEST(XMLNodeData, ReleaseDetachesChildrenThatLiveOn) {
  XMLNodeData* parent = makeNode("parent", 2);
  XMLNodeData* kept = makeNode("kept", 0);
  XMLNodeData* dropped = makeNode("dropped", 0);
  parent->pChildren[0] = kept;
  parent->pChildren[1] = dropped;
  kept->pParent = parent;
  dropped->pParent = parent;
  XMLNodeDataAddRef(kept);
  EXPECT_EQ(kept->iRefCount, 2);
  XMLNodeDataRelease(parent);
  EXPECT_EQ(kept->iRefCount, 1);
  EXPECT_EQ(kept->pParent, nullptr);
  EXPECT_STREQ(kept->sName, "kept");
  XMLNodeDataRelease(kept);
}

TEST(XMLNodeData, LongChainsAreReleasedWithoutRecursion) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  // A recursive release would overflow the stack long before the end; the
  // tracker shows that every node went back.
  CHeapTracker tracker(false, true);
  tracker.Activate();
  XMLNodeData* top = makeNode("n", 1);
  XMLNodeData* last = top;
  for (int i = 0; i < 300000; ++i) {
    XMLNodeData* child = makeNode("n", 1);
    last->pChildren[0] = child;
    child->pParent = last;
    last = child;
  }
  last->iChildCount = 0;
  XMLNodeDataRelease(top);
  tracker.Deactivate();
  EXPECT_EQ(tracker.GetMallocCount(), 300001u);
  EXPECT_EQ(tracker.GetFreeCount(), 300001u);
  EXPECT_EQ(tracker.GetCurrentAlloc(), 0);
}
