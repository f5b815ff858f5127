#include "services/xml/XMLParseStack.h"

#include <gtest/gtest.h>

#include "services/xml/XMLNode.h"

using namespace TestSuite;

TEST(XMLParseStack, GrowthStepIs50DuringAParseAndZeroAfter) {
  EXPECT_EQ(CXMLGrowth::s_iStep.load(), 0);
  {
    CXMLGrowth::CScope scope;
    EXPECT_EQ(CXMLGrowth::s_iStep.load(), 50);
    EXPECT_EQ(CXMLGrowth::Next(0), 50u);
    EXPECT_EQ(CXMLGrowth::Next(50), 100u);
    EXPECT_EQ(CXMLGrowth::Next(400), 800u);  // long arrays double
  }
  EXPECT_EQ(CXMLGrowth::s_iStep.load(), 0);
  EXPECT_EQ(CXMLGrowth::Next(0), 1u);
  EXPECT_EQ(CXMLGrowth::Next(1), 2u);
  XMLNode::parseString("<a><b/></a>");
  EXPECT_EQ(CXMLGrowth::s_iStep.load(), 0);
}

TEST(XMLParseStack, PushExtendTruncate) {
  CXMLGrowth::CScope scope;
  CXMLParseStack<int> stack;
  EXPECT_TRUE(stack.IsEmpty());
  for (int i = 0; i < 1000; ++i) stack.Push(i);
  EXPECT_EQ(stack.Size(), 1000u);
  EXPECT_EQ(stack[999], 999);
  int* extra = stack.Extend(3);
  extra[2] = 7;
  EXPECT_EQ(stack.Back(), 7);
  stack.Truncate(10);
  EXPECT_EQ(stack.Size(), 10u);
  stack.Truncate(20);  // never lengthens
  EXPECT_EQ(stack.Size(), 10u);
  stack.Pop();
  EXPECT_EQ(stack.Back(), 8);
}
