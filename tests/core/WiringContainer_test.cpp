#include "core/WiringContainer.h"

#include <gtest/gtest.h>

#include <cstring>

#include "TempDirectory.h"

namespace {

const char* const c_szConfiguration = "<?xml version=\"1.0\"?>\n<Wiring><Component name=\"a\"/></Wiring>\n";

}  // namespace

TEST(WiringContainer, HoldsTheConfigurationGivenAsText) {
  const Wiring::CContainer container(c_szConfiguration, false);
  ASSERT_FALSE(container.IsEmpty());
  const TestSuite::XMLNode wiring = container.GetConfiguration().getChildNode("Wiring");
  ASSERT_FALSE(wiring.isEmpty());
  EXPECT_STREQ(wiring.getChildNode("Component").getAttribute("name"), "a");
}

TEST(WiringContainer, HoldsTheConfigurationReadFromAFile) {
  TempDirectory dir;
  dir.WriteFile(L"ZoTestSuite.wiring.xml", c_szConfiguration);
  const Wiring::CContainer container((dir.Path() + L"ZoTestSuite.wiring.xml").GetString(), false);
  EXPECT_FALSE(container.IsEmpty());
  EXPECT_FALSE(container.GetConfiguration().getChildNode("Wiring").isEmpty());
}

TEST(WiringContainer, AFileThatCannotBeReadLeavesItEmpty) {
  TempDirectory dir;
  const Wiring::CContainer container((dir.Path() + L"missing.xml").GetString(), false);
  EXPECT_TRUE(container.IsEmpty());
  EXPECT_TRUE(container.GetConfiguration().isEmpty());
}

TEST(WiringContainer, TextThatDoesNotParseLeavesItEmpty) {
  EXPECT_TRUE(Wiring::CContainer("", false).IsEmpty());
  EXPECT_TRUE(Wiring::CContainer("<Wiring><A></B></Wiring>", false).IsEmpty());
  EXPECT_TRUE(Wiring::CContainer(static_cast<const char*>(nullptr), false).IsEmpty());
}

TEST(WiringContainer, AContainerMadeCurrentIsFoundUntilItGoes) {
  {
    const Wiring::CContainer container(c_szConfiguration, true);
    EXPECT_EQ(Wiring::CContainer::GetCurrent(), &container);
    const Wiring::CContainer other(c_szConfiguration, false);
    EXPECT_EQ(Wiring::CContainer::GetCurrent(), &container);
  }
  EXPECT_EQ(Wiring::CContainer::GetCurrent(), nullptr);
}

TEST(WiringContainer, AnEmptyContainerNeverBecomesCurrent) {
  const Wiring::CContainer container("", true);
  EXPECT_NE(Wiring::CContainer::GetCurrent(), &container);
}
