// Named mutexes, semaphores and mappings: opened, used, released and closed.
#include <algorithm>
#include <cstring>
#include <string>

#include "platform/kernel/sync.h"
#include "tests/death/LayerScenario.h"
#include "tests/death/scenarios.h"

namespace juntora::test {
namespace {

constexpr char SHARED[] = "object that the survivor holds too";
constexpr char OWN[] = "object of the dead alone";
constexpr char BESIDE[] = "object that nobody but the survivor knows";
constexpr std::size_t BYTES = 8'192;
constexpr LONG COUNTS = 2;

/// The survivor holds the object too, or else it goes with the dead.
class HoldingObject : public LayerScenario {
public:
    explicit HoldingObject(bool isShared) : m_isShared(isShared) {}

protected:
    const char* objectName() const { return m_isShared ? SHARED : OWN; }
    /// Whether there is one, right after its opening.
    bool checkOpening(Findings& findings, HANDLE object) const {
        const DWORD error = GetLastError();
        findings.expect(error == (m_isShared ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS),
                        "the opening of the object told " + std::to_string(error));
        return findings.expect(object != nullptr, "the object cannot be opened");
    }

    const bool m_isShared;
};

class Locking : public HoldingObject {
public:
    using HoldingObject::HoldingObject;
    std::string name() const override {
        return m_isShared ? "holdingASharedMutex" : "holdingAMutex";
    }
    void settle() override {
        LayerScenario::settle();
        m_beside = CreateMutexA(true, BESIDE);
        m_mutex = m_isShared ? CreateMutexA(false, SHARED) : nullptr;
    }
    void operate() override { useMutex(); }
    void mend() override { useMutex(); }

protected:
    void look(Findings& findings) override {
        HANDLE mutex = CreateMutexA(false, objectName());
        if (!checkOpening(findings, mutex)) {
            return;
        }
        const DWORD wait = WaitForSingleObject(mutex, 1'000);
        findings.expect(wait == WAIT_OBJECT_0 || (m_isShared && wait == WAIT_ABANDONED),
                        "the wait for the mutex told " + std::to_string(wait));
        findings.expect(ReleaseMutex(mutex) != 0, "the mutex cannot be released");
        findings.expect(WaitForSingleObject(mutex, 0) == WAIT_OBJECT_0,
                        "the mutex is still marked abandoned");
        ReleaseMutex(mutex);
        findings.expect(CloseHandle(mutex) != 0, "the mutex cannot be closed");
        findings.expect(ReleaseMutex(m_beside) != 0, "another mutex was lost");
        findings.expect(WaitForSingleObject(m_beside, 0) == WAIT_OBJECT_0,
                        "another mutex cannot be had");
    }

private:
    void useMutex() {
        HANDLE mutex = CreateMutexA(true, objectName());
        WaitForSingleObject(mutex, 1'000);
        ReleaseMutex(mutex);
        CloseHandle(mutex);
    }

    HANDLE m_mutex = nullptr;
    HANDLE m_beside = nullptr;
};

class Counting : public HoldingObject {
public:
    using HoldingObject::HoldingObject;
    std::string name() const override {
        return m_isShared ? "holdingASharedSemaphore" : "holdingASemaphore";
    }
    void settle() override {
        LayerScenario::settle();
        m_semaphore = m_isShared ? CreateSemaphoreA(COUNTS, COUNTS, SHARED) : nullptr;
    }
    void operate() override {
        HANDLE semaphore = open();
        WaitForSingleObject(semaphore, 1'000);
        WaitForSingleObject(semaphore, 1'000);
        ReleaseSemaphore(semaphore, 1, nullptr);
        CloseHandle(semaphore);
    }
    void mend() override {
        HANDLE semaphore = open();
        WaitForSingleObject(semaphore, 1'000);
        CloseHandle(semaphore);
    }

protected:
    void look(Findings& findings) override {
        HANDLE semaphore = open();
        if (!checkOpening(findings, semaphore)) {
            return;
        }
        for (LONG i = 0; i < COUNTS; ++i) {
            findings.expect(WaitForSingleObject(semaphore, 1'000) == WAIT_OBJECT_0,
                            "count " + std::to_string(i) + " was lost");
        }
        findings.expect(WaitForSingleObject(semaphore, 0) == WAIT_TIMEOUT,
                        "there are more counts than there were");
        LONG previous = -1;
        findings.expect(ReleaseSemaphore(semaphore, COUNTS, &previous) != 0 && previous == 0,
                        "the counts cannot be given back");
        findings.expect(CloseHandle(semaphore) != 0, "the semaphore cannot be closed");
    }

private:
    HANDLE open() { return CreateSemaphoreA(COUNTS, COUNTS, objectName()); }

    HANDLE m_semaphore = nullptr;
};

class Mapping : public HoldingObject {
public:
    using HoldingObject::HoldingObject;
    std::string name() const override {
        return m_isShared ? "holdingASharedMapping" : "holdingAMapping";
    }
    void settle() override {
        LayerScenario::settle();
        if (m_isShared) {
            m_mapping = CreateFileMappingA(BYTES, SHARED);
            m_view = static_cast<char*>(MapViewOfFile(m_mapping, BYTES));
            std::memset(m_view, 's', BYTES);
        }
    }
    void operate() override { useMapping(); }
    void mend() override { useMapping(); }

protected:
    void look(Findings& findings) override {
        HANDLE mapping = open();
        if (!checkOpening(findings, mapping)) {
            return;
        }
        auto* view = static_cast<char*>(MapViewOfFile(mapping, BYTES));
        if (findings.expect(view != nullptr, "the mapping cannot be mapped")) {
            checkContents(findings, view);
            findings.expect(UnmapViewOfFile(view) != 0, "the view cannot be given up");
        }
        findings.expect(CloseHandle(mapping) != 0, "the mapping cannot be closed");
    }

private:
    HANDLE open() { return CreateFileMappingA(BYTES, objectName()); }
    void useMapping() {
        HANDLE mapping = open();
        auto* view = static_cast<char*>(MapViewOfFile(mapping, BYTES));
        if (view != nullptr) {
            view[0] = 'v';
            view[BYTES - 1] = 'v';
            UnmapViewOfFile(view);
        }
        CloseHandle(mapping);
    }
    void checkContents(Findings& findings, char* view) {
        if (!m_isShared) {
            findings.expect(std::all_of(view, view + BYTES, [](char c) { return c == 0; }),
                            "a new mapping is not zero");
            return;
        }
        const bool kept =
            std::all_of(view + 1, view + BYTES - 1, [](char c) { return c == 's'; }) &&
            (view[0] == 's' || view[0] == 'v');
        findings.expect(kept, "the mapping lost what the survivor wrote");
        m_view[0] = 's';
        findings.expect(view[0] == 's', "there are two mappings of one name");
        m_view[BYTES - 1] = 's';
    }

    HANDLE m_mapping = nullptr;
    char* m_view = nullptr;
};

const Registration<Locking, Counting, Mapping> shared(true);
const Registration<Locking, Counting, Mapping> own(false);

}  // namespace
}  // namespace juntora::test
