// HeapHooks: the engine's states, observers that see the calls of their
// function only while its hook is enabled, and the tracker's re-entrant
// lock. The engine is process-wide, so every test runs in a process of its
// own (a death test in the "threadsafe" style starts the program afresh)
// and reports through its exit code.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <thread>

#include "HeapInterception.h"
#include "services/platform/HeapHooks.h"

using namespace TestSuite;
namespace Hooks = TestSuite::HeapHooks;

namespace {

// A size no other allocation of the test uses.
constexpr std::size_t sc_uiMarkSize = 123457;

std::atomic<int> g_iMarkedMallocs{0};
std::atomic<void*> g_pLastFreed{nullptr};
std::atomic<void*> g_pReallocFrom{nullptr};
std::atomic<void*> g_pReallocTo{nullptr};

void onMalloc(void*, std::uint64_t size) {
  if (size == sc_uiMarkSize) ++g_iMarkedMallocs;
}
void onFree(void* address) {
  if (address) g_pLastFreed = address;
}
void onRealloc(void* from, void* to, std::uint64_t size) {
  if (size == sc_uiMarkSize) {
    g_pReallocFrom = from;
    g_pReallocTo = to;
  }
}

void* (*volatile g_fnMalloc)(std::size_t) = &std::malloc;
void (*volatile g_fnFree)(void*) = &std::free;
void* (*volatile g_fnRealloc)(void*, std::size_t) = &std::realloc;

class HeapHooksTest : public ::testing::Test {
 protected:
  void SetUp() override {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    HEAP_SKIP_WITHOUT_INTERCEPTION();
  }
};

TEST_F(HeapHooksTest, InitializeOnceThenItReportsThatItWasDone) {
  EXPECT_EXIT(
      {
        const bool ok = Hooks::Uninitialize() != 0 && Hooks::Initialize() == 0 && Hooks::Initialize() != 0 &&
                        Hooks::Uninitialize() == 0 && Hooks::Uninitialize() != 0 && Hooks::Initialize() == 0;
        std::_Exit(ok ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(HeapHooksTest, HooksAreCreatedOnlyAfterInitializeAndGiveTheRealFunction) {
  EXPECT_EXIT(
      {
        Hooks::FnMalloc realMalloc = nullptr;
        if (Hooks::CreateHook(&onMalloc, &realMalloc) == 0) std::_Exit(1);
        Hooks::Initialize();
        if (Hooks::CreateHook(&onMalloc, &realMalloc) != 0 || realMalloc == nullptr) std::_Exit(2);
        if (Hooks::CreateHook(static_cast<Hooks::FnMallocObserver>(nullptr), &realMalloc) == 0) std::_Exit(3);
        Hooks::EnableHook(Hooks::EFunction::Malloc);
        std::free(realMalloc(sc_uiMarkSize));  // the real function passes the observer by
        std::_Exit(g_iMarkedMallocs == 0 ? 0 : 4);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(HeapHooksTest, TheObserverSeesCallsOnlyWhileItsHookIsEnabled) {
  EXPECT_EXIT(
      {
        Hooks::Initialize();
        Hooks::FnMalloc realMalloc = nullptr;
        Hooks::CreateHook(&onMalloc, &realMalloc);
        g_fnFree(g_fnMalloc(sc_uiMarkSize));
        const int beforeEnable = g_iMarkedMallocs;
        Hooks::EnableHook(Hooks::EFunction::Malloc);
        g_fnFree(g_fnMalloc(sc_uiMarkSize));
        const int whileEnabled = g_iMarkedMallocs;
        Hooks::DisableHook(Hooks::EFunction::Malloc);
        g_fnFree(g_fnMalloc(sc_uiMarkSize));
        std::_Exit(beforeEnable == 0 && whileEnabled == 1 && g_iMarkedMallocs == 1 ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(HeapHooksTest, FreeAndReallocObserversSeeTheAddresses) {
  EXPECT_EXIT(
      {
        Hooks::Initialize();
        Hooks::FnFree realFree = nullptr;
        Hooks::FnRealloc realRealloc = nullptr;
        Hooks::CreateHook(&onFree, &realFree);
        Hooks::CreateHook(&onRealloc, &realRealloc);
        Hooks::EnableHook(Hooks::EFunction::Free);
        Hooks::EnableHook(Hooks::EFunction::Realloc);
        void* first = g_fnMalloc(16);
        void* second = g_fnRealloc(first, sc_uiMarkSize);
        const bool reallocSeen = g_pReallocFrom.load() == first && g_pReallocTo.load() == second;
        g_fnFree(second);
        const bool freeSeen = g_pLastFreed.load() == second;
        Hooks::DisableHook(Hooks::EFunction::Free);
        Hooks::DisableHook(Hooks::EFunction::Realloc);
        std::_Exit(reallocSeen && freeSeen ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(HeapHooksTest, AHookNeverCreatedOrForgottenCannotBeSwitched) {
  EXPECT_EXIT(
      {
        Hooks::Initialize();
        if (Hooks::EnableHook(Hooks::EFunction::Realloc) == 0) std::_Exit(1);
        if (Hooks::DisableHook(Hooks::EFunction::Realloc) == 0) std::_Exit(2);
        Hooks::FnMalloc realMalloc = nullptr;
        Hooks::CreateHook(&onMalloc, &realMalloc);
        Hooks::EnableHook(Hooks::EFunction::Malloc);
        Hooks::Uninitialize();
        if (Hooks::EnableHook(Hooks::EFunction::Malloc) == 0) std::_Exit(3);
        g_fnFree(g_fnMalloc(sc_uiMarkSize));  // the observer was forgotten
        std::_Exit(g_iMarkedMallocs == 0 ? 0 : 4);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(HeapHooksTest, TheTrackerLockIsOneReEntrantLockForAllHandles) {
  EXPECT_EXIT(
      {
        Hooks::CTrackerLock first;
        Hooks::CTrackerLock second;
        first.Lock();
        second.Lock();  // the same lock, taken again by its holder
        std::atomic<bool> taken{false};
        std::thread other([&taken] {
          Hooks::CTrackerLock third;
          third.Lock();
          taken = true;
          third.Unlock();
        });
        const bool takenWhileHeld = taken;
        first.Unlock();
        second.Unlock();
        other.join();
        std::_Exit(!takenWhileHeld && taken ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

// The allocator path's scope takes the lock only once the process has had a
// second thread. Runs in a fresh run of this program, which starts with one
// thread.
TEST_F(HeapHooksTest, TheTrackerScopeTakesTheLockOnlyOnceASecondThreadHasExisted) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        if (!XbReentrantLock::IsProcessSingleThreaded()) std::_Exit(3);
        bool heldAlone = true;
        {
          const Hooks::CTrackerScope scope;
          heldAlone = Hooks::g_TrackerLock.IsHeldByCurrentThread();
        }
        std::thread([] {}).join();
        bool heldLater = false;
        {
          const Hooks::CTrackerScope scope;
          heldLater = Hooks::g_TrackerLock.IsHeldByCurrentThread();
        }
        const bool freeAfter = !Hooks::g_TrackerLock.IsHeldByCurrentThread();
        std::_Exit(!heldAlone && heldLater && freeAfter ? 0 : 4);
      },
      ::testing::ExitedWithCode(0), "");
}

}  // namespace
