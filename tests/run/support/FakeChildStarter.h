// CFakeChildStarter: a child starter that starts no process; by its kind
// its children fail to start, die at once, or live and never answer (a
// test answers for them, or ends them when it likes). SFakeChildren: a case
// context on a fake clock with such a starter.
#pragma once

#include <algorithm>
#include <atomic>
#include <memory>
#include <vector>

#include "run/CaseExecution.h"
#include "run/external/ChildProcess.h"
#include "run_FakeClock.h"

namespace RunTestClasses {

class CFakeChildStarter : public TestSuite::IChildStarter {
 public:
  enum class EKind { eFailsToStart, eDiesAtOnce, eNeverAnswers };

  explicit CFakeChildStarter(EKind kind) : m_kinds{kind} {}
  // The n-th child asked for is of the n-th kind; the last kind repeats.
  explicit CFakeChildStarter(std::vector<EKind> kinds) : m_kinds(std::move(kinds)) {}

  std::unique_ptr<TestSuite::SChildProcess> Start(const CString&, const TestSuite::SCaseContext&) override {
    const unsigned int n = m_uiStarts++;
    const EKind kind = m_kinds[std::min<std::size_t>(n, m_kinds.size() - 1)];
    if (kind == EKind::eFailsToStart) return nullptr;
    m_pLastAlive = std::make_shared<std::atomic<bool>>(kind == EKind::eNeverAnswers);
    return std::make_unique<CFakeChild>(m_pLastAlive, TestSuite::TakeChildIndex(), m_uiGone);
  }

  // Children asked for, and children that went again (killed or found dead).
  unsigned int Starts() const { return m_uiStarts.load(); }
  unsigned int Gone() const { return m_uiGone.load(); }
  // The child started last is found dead from now on, as if it had ended.
  void EndLastChild() {
    if (m_pLastAlive) m_pLastAlive->store(false);
  }

 private:
  // Holds no process; alive until it is ended.
  struct CFakeChild : TestSuite::SChildProcess {
    CFakeChild(std::shared_ptr<std::atomic<bool>> alive, unsigned int index, std::atomic<unsigned int>& gone)
        : SChildProcess(ZoPlatform::Process::CChild(), index), m_pAlive(std::move(alive)), m_gone(gone) {}
    ~CFakeChild() override { ++m_gone; }
    bool IsAlive() override { return m_pAlive->load(); }

    std::shared_ptr<std::atomic<bool>> m_pAlive;
    std::atomic<unsigned int>& m_gone;
  };

  std::vector<EKind> m_kinds;
  std::shared_ptr<std::atomic<bool>> m_pLastAlive;
  std::atomic<unsigned int> m_uiStarts{0};
  std::atomic<unsigned int> m_uiGone{0};
};

// A case context on a fake clock whose children come from a fake starter.
struct SFakeChildren {
  template <typename TKinds>
  explicit SFakeChildren(TKinds kinds) : starter(kinds) {
    context.pChildStarter = &starter;
    context.pClock = &clock;
  }
  CFakeChildStarter starter;
  CFakeClock clock;
  TestSuite::SCaseContext context;  // goes first: its child tells the starter
};

}  // namespace RunTestClasses
