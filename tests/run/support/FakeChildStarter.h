// CFakeChildStarter: a child starter that starts no process; by its kind
// its children fail to start, die at once, or live and never answer.
#pragma once

#include <atomic>
#include <memory>

#include "run/external/ChildProcess.h"

namespace RunTestClasses {

class CFakeChildStarter : public TestSuite::IChildStarter {
 public:
  enum class EKind { eFailsToStart, eDiesAtOnce, eNeverAnswers };

  explicit CFakeChildStarter(EKind kind) : m_eKind(kind) {}

  std::unique_ptr<TestSuite::SChildProcess> Start(const CString&, const TestSuite::SCaseContext&) override {
    ++m_uiStarts;
    if (m_eKind == EKind::eFailsToStart) return nullptr;
    return std::make_unique<CFakeChild>(m_eKind == EKind::eNeverAnswers, TestSuite::TakeChildIndex(), m_uiGone);
  }

  // Children asked for, and children that went again (killed or found dead).
  unsigned int Starts() const { return m_uiStarts.load(); }
  unsigned int Gone() const { return m_uiGone.load(); }

 private:
  // Holds no process; alive for ever or never.
  struct CFakeChild : TestSuite::SChildProcess {
    CFakeChild(bool alive, unsigned int index, std::atomic<unsigned int>& gone)
        : SChildProcess(ZoPlatform::Process::CChild(), index), m_bAlive(alive), m_gone(gone) {}
    ~CFakeChild() override { ++m_gone; }
    bool IsAlive() override { return m_bAlive; }

    bool m_bAlive;
    std::atomic<unsigned int>& m_gone;
  };

  EKind m_eKind;
  std::atomic<unsigned int> m_uiStarts{0};
  std::atomic<unsigned int> m_uiGone{0};
};

}  // namespace RunTestClasses
