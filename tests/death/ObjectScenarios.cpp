// Named mutexes, semaphores and mappings: opened, used, released and closed.
#include <algorithm>
#include <cstring>
#include <memory>
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

class Locking : public LayerScenario {
public:
    explicit Locking(bool shared) : m_shared(shared) {}
    std::string name() const override { return m_shared ? "holdingASharedMutex" : "holdingAMutex"; }
    void settle() override {
        LayerScenario::settle();
        m_beside = CreateMutexA(true, BESIDE);
        m_mutex = m_shared ? CreateMutexA(false, SHARED) : nullptr;
    }
    void operate() override { useMutex(); }
    void mend() override { useMutex(); }

protected:
    void look(Findings& findings) override {
        HANDLE mutex = CreateMutexA(false, objectName());
        const DWORD error = GetLastError();
        if (!findings.expect(mutex != nullptr, "the mutex cannot be opened")) {
            return;
        }
        findings.expect(error == (m_shared ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS),
                        "the opening of the mutex told " + std::to_string(error));
        const DWORD wait = WaitForSingleObject(mutex, 1'000);
        findings.expect(wait == WAIT_OBJECT_0 || (m_shared && wait == WAIT_ABANDONED),
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
    const char* objectName() const { return m_shared ? SHARED : OWN; }
    void useMutex() {
        HANDLE mutex = CreateMutexA(true, objectName());
        WaitForSingleObject(mutex, 1'000);
        ReleaseMutex(mutex);
        CloseHandle(mutex);
    }

    const bool m_shared;
    HANDLE m_mutex = nullptr;
    HANDLE m_beside = nullptr;
};

class Counting : public LayerScenario {
public:
    explicit Counting(bool shared) : m_shared(shared) {}
    std::string name() const override {
        return m_shared ? "holdingASharedSemaphore" : "holdingASemaphore";
    }
    void settle() override {
        LayerScenario::settle();
        m_semaphore = m_shared ? CreateSemaphoreA(COUNTS, COUNTS, SHARED) : nullptr;
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
        const DWORD error = GetLastError();
        if (!findings.expect(semaphore != nullptr, "the semaphore cannot be opened")) {
            return;
        }
        findings.expect(error == (m_shared ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS),
                        "the opening of the semaphore told " + std::to_string(error));
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
    HANDLE open() { return CreateSemaphoreA(COUNTS, COUNTS, m_shared ? SHARED : OWN); }

    const bool m_shared;
    HANDLE m_semaphore = nullptr;
};

class Mapping : public LayerScenario {
public:
    explicit Mapping(bool shared) : m_shared(shared) {}
    std::string name() const override {
        return m_shared ? "holdingASharedMapping" : "holdingAMapping";
    }
    void settle() override {
        LayerScenario::settle();
        if (m_shared) {
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
        const DWORD error = GetLastError();
        if (!findings.expect(mapping != nullptr, "the mapping cannot be opened")) {
            return;
        }
        findings.expect(error == (m_shared ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS),
                        "the opening of the mapping told " + std::to_string(error));
        auto* view = static_cast<char*>(MapViewOfFile(mapping, BYTES));
        if (findings.expect(view != nullptr, "the mapping cannot be mapped")) {
            checkContents(findings, view);
            findings.expect(UnmapViewOfFile(view) != 0, "the view cannot be given up");
        }
        findings.expect(CloseHandle(mapping) != 0, "the mapping cannot be closed");
    }

private:
    HANDLE open() { return CreateFileMappingA(BYTES, m_shared ? SHARED : OWN); }
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
        if (!m_shared) {
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

    const bool m_shared;
    HANDLE m_mapping = nullptr;
    char* m_view = nullptr;
};

template <typename Kind>
void addBoth(Scenarios& all) {
    all.push_back([] { return std::make_unique<Kind>(true); });
    all.push_back([] { return std::make_unique<Kind>(false); });
}

}  // namespace

void addObjectScenarios(Scenarios& all) {
    addBoth<Locking>(all);
    addBoth<Counting>(all);
    addBoth<Mapping>(all);
}

}  // namespace juntora::test
