#include "run/external/NamedEvent.h"

#include <gtest/gtest.h>

#include <thread>

#include "foundation/XbException.h"
#include "foundation/ZoUniqueId.h"
#include "foundation/platform/NamedSemaphore.h"
#include "run/external/ExternalObjectName.h"

using namespace TestSuite;

namespace {

CString newId() { return ZoUniqueIdT<CString>::GetUniqueID(); }

bool exists(const CString& id) { return ZoPlatform::NamedSemaphore::Exists(MakeExternalObjectName(id)); }

}  // namespace

TEST(NamedEvent, ASetIsTakenByOneWaitAndASecondSetChangesNothing) {
  CNamedEvent event(newId(), false);
  EXPECT_EQ(event.Wait(0), CNamedEvent::eWaitTimedOut);
  event.Set();
  event.Set();
  EXPECT_EQ(event.Wait(0), CNamedEvent::eWaitSignalled);
  EXPECT_EQ(event.Wait(0), CNamedEvent::eWaitTimedOut);
}

TEST(NamedEvent, BothSidesSeeTheSameEvent) {
  const CString id = newId();
  CNamedEvent owner(id, false);
  CNamedEvent attached(id, true);
  owner.Set();
  EXPECT_EQ(attached.Wait(0), CNamedEvent::eWaitSignalled);
  std::thread setter([&attached] { attached.Set(); });
  EXPECT_EQ(owner.Wait(60000), CNamedEvent::eWaitSignalled);
  setter.join();
}

TEST(NamedEvent, TheNameCarriesThePrefixAndGoesWithItsCreator) {
  const CString id = newId();
  {
    CNamedEvent owner(id, false);
    EXPECT_EQ(owner.GetName(), id);
    EXPECT_TRUE(ZoPlatform::NamedSemaphore::Exists("ZoTestSuite-" + id.ToUtf8()));
    { CNamedEvent attached(id, true); }
    EXPECT_TRUE(exists(id)) << "the side that only attached removed the name";
  }
  EXPECT_FALSE(exists(id));
}

TEST(NamedEvent, AttachingToNothingAndCreatingTwiceThrow) {
  const CString id = newId();
  try {
    CNamedEvent attached(id, true);
    FAIL() << "no exception";
  } catch (const XbException& error) { EXPECT_STREQ(error.what(), "TestSuite::Run::CNamedEvent::CNamedEvent"); }
  CNamedEvent owner(id, false);
  EXPECT_THROW(CNamedEvent(id, false), XbException);
  EXPECT_TRUE(exists(id)) << "the failed second creator removed the first one's name";
}
