// The registry's files: made, missing, damaged, locked, not this user's; and several processes.
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <sqlite3.h>

#include "tests/platform/RegistryFolder.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;

/// Another program with a hive's file open, as far as SQLite goes.
class Intruder {
public:
    explicit Intruder(const std::string& path) {
        sqlite3* connection = nullptr;
        EXPECT_EQ(SQLITE_OK, sqlite3_open(path.c_str(), &connection));
        m_connection.reset(connection);
    }
    void run(const char* statements) {
        EXPECT_EQ(SQLITE_OK,
                  sqlite3_exec(m_connection.get(), statements, nullptr, nullptr, nullptr))
            << sqlite3_errmsg(m_connection.get());
    }

private:
    struct Closer {
        void operator()(sqlite3* connection) const { sqlite3_close(connection); }
    };
    std::unique_ptr<sqlite3, Closer> m_connection;
};

/// A word from one process to another. SQLite's own state does not outlive a fork, so that whoever
/// uses it here does so in a child of its own.
class Pipe {
public:
    Pipe() { EXPECT_EQ(0, pipe2(m_ends, O_CLOEXEC)); }
    ~Pipe() {
        close(m_ends[0]);
        close(m_ends[1]);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    void put(int word = 0) const {
        EXPECT_EQ(static_cast<long>(sizeof word), ::write(m_ends[1], &word, sizeof word));
    }
    int take() const {
        int word = -1;
        EXPECT_EQ(static_cast<long>(sizeof word), ::read(m_ends[0], &word, sizeof word));
        return word;
    }

private:
    int m_ends[2]{-1, -1};
};

class RegistryFileTest : public RegistryFolder {
protected:
    static mode_t modeOf(const std::string& path) {
        struct stat state {};
        EXPECT_EQ(0, stat(path.c_str(), &state)) << path;
        return state.st_mode & 0777;
    }
    static std::string made(const std::string& folder) {
        fs::create_directory(folder);
        fs::permissions(folder, fs::perms::owner_all);
        return folder;
    }
    /// Runs `part` in a child that has its registry in `folder`; what it writes to standard error.
    std::string complaintsOf(const std::string& folder, const std::function<void()>& part) const {
        const std::string errors = file("errors");
        EXPECT_TRUE(apart([&] {
            moveTo(folder);
            const int to = ::open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
            dup2(to, STDERR_FILENO);
            part();
        }));
        return content(errors);
    }
    /// A file in the place of the user's hive is refused with `error`, left as it is, and told of
    /// once, by its name.
    void expectRefused(const std::string& folder, DWORD error) const {
        const std::string path = folder + "/user.db";
        const std::string before = content(path);
        const std::string complaints = complaintsOf(folder, [&] {
            EXPECT_EQ(error, tryOpen(HKEY_CURRENT_USER, "Software"));
            EXPECT_EQ(error, write(HKEY_CURRENT_USER, "Software", "x", "1"));
            EXPECT_EQ(error, tryOpen(HKEY_CLASSES_ROOT, "x"));
            EXPECT_EQ(ERROR_FILE_NOT_FOUND, tryOpen(HKEY_LOCAL_MACHINE, "x"));
        });
        EXPECT_EQ(1, std::count(complaints.begin(), complaints.end(), '\n')) << complaints;
        EXPECT_NE(std::string::npos, complaints.find(path)) << complaints;
        EXPECT_EQ(before, content(path));
    }
};

TEST_F(RegistryFileTest, MakesFilesOnlyToWrite) {
    const std::string place = file("new/registry");
    EXPECT_EQ(
        "", complaintsOf(place, [&] {
            for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_CLASSES_ROOT}) {
                EXPECT_EQ("error 2", read(root, "Software", ""));
                EXPECT_EQ("error 2", read(root, "", "x"));
                EXPECT_EQ((Names{}), subkeys(root));
                EXPECT_EQ(ERROR_FILE_NOT_FOUND, RegDeleteKeyA(root, "Software"));
                EXPECT_EQ(ERROR_FILE_NOT_FOUND, RegDeleteValueA(root, "x"));
            }
            EXPECT_FALSE(fs::exists(file("new")));
            EXPECT_EQ(ERROR_SUCCESS, tryOpen(HKEY_CURRENT_USER, "software", KEY_READ | KEY_WRITE));
            EXPECT_EQ((Names{"Classes"}), subkeys(open(HKEY_CURRENT_USER, "Software")));
            EXPECT_FALSE(fs::exists(place + "/machine.db"));
            EXPECT_EQ(ERROR_SUCCESS, write(HKEY_LOCAL_MACHINE, "Software", "x", "1"));
        }));
    EXPECT_EQ(0700U, modeOf(place));
    EXPECT_EQ(0600U, modeOf(place + "/user.db"));
    EXPECT_EQ(0644U, modeOf(place + "/machine.db"));
}

TEST_F(RegistryFileTest, PutsTheUsersFileIntoTheDataFolder) {
    EXPECT_TRUE(apart([&] {
        unsetenv("JUNTORA_REGISTRY");
        setenv("HOME", file("home").c_str(), 1);
        unsetenv("XDG_DATA_HOME");
        EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CURRENT_USER, "Software", "x", "1"));
        EXPECT_EQ(0600U, modeOf(file("home/.local/share/juntora/registry.db")));
    }));
    EXPECT_TRUE(apart([&] {
        unsetenv("JUNTORA_REGISTRY");
        setenv("XDG_DATA_HOME", file("data").c_str(), 1);
        EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CURRENT_USER, "Software", "x", "1"));
        EXPECT_EQ(0700U, modeOf(file("data/juntora")));
    }));
    const std::string complaints = complaintsOf("not/absolute", [] {
        EXPECT_EQ(ERROR_REGISTRY_IO_FAILED, write(HKEY_CURRENT_USER, "Software", "x", "1"));
    });
    EXPECT_NE(std::string::npos, complaints.find("JUNTORA_REGISTRY")) << complaints;
}

TEST_F(RegistryFileTest, RefusesWhatIsNoRegistry) {
    const std::string garbage = made(file("garbage"));
    std::ofstream(garbage + "/user.db") << std::string(5000, 'g');
    expectRefused(garbage, ERROR_BADDB);

    const std::string empty = made(file("empty"));
    std::ofstream(empty + "/user.db").close();
    expectRefused(empty, ERROR_NOT_REGISTRY_FILE);

    const std::string other = made(file("other"));
    Intruder(other + "/user.db").run("CREATE TABLE key(id); PRAGMA user_version = 1");
    expectRefused(other, ERROR_NOT_REGISTRY_FILE);

    const std::string later = made(file("later"));
    complaintsOf(later, [] { write(HKEY_CURRENT_USER, "Software", "x", "1"); });
    Intruder(later + "/user.db").run("PRAGMA user_version = 2");
    expectRefused(later, ERROR_NOT_REGISTRY_FILE);

    const std::string folder = made(file("folder"));
    made(folder + "/user.db");
    expectRefused(folder, ERROR_NOT_REGISTRY_FILE);
}

TEST_F(RegistryFileTest, TellsOfDamageInAFileThatIsOpen) {
    const std::string place = file("damaged");
    const std::string complaints = complaintsOf(place, [&] {
        for (int i = 0; i < 400; ++i) {
            write(HKEY_CURRENT_USER, "Software\\Key " + std::to_string(i), "x", "1");
        }
        closeFiles();
    });
    EXPECT_EQ("", complaints);
    std::string bytes = content(place + "/user.db");
    ASSERT_GT(bytes.size(), 8 * 4096U);
    std::fill(bytes.begin() + 4096, bytes.end(), '\xa5');  // All but the page with the tables.
    std::ofstream(place + "/user.db", std::ios::binary) << bytes;
    const std::string told = complaintsOf(place, [&] {
        EXPECT_EQ(ERROR_BADDB, tryOpen(HKEY_CURRENT_USER, "Software\\Key 1"));
        EXPECT_EQ(ERROR_BADDB, write(HKEY_CURRENT_USER, "Software\\New", "x", "1"));
    });
    EXPECT_EQ(1, std::count(told.begin(), told.end(), '\n')) << told;
}

TEST_F(RegistryFileTest, RefusesFilesThatOthersCouldHaveWritten) {
    const std::string loose = file("loose");
    complaintsOf(loose, [] { write(HKEY_CURRENT_USER, "Software", "x", "1"); });
    fs::permissions(loose + "/user.db", fs::perms(0622));
    expectRefused(loose, ERROR_ACCESS_DENIED);
    fs::permissions(loose + "/user.db", fs::perms(0600));
    EXPECT_EQ(
        "", complaintsOf(loose, [] { EXPECT_EQ("1", read(HKEY_CURRENT_USER, "Software", "x")); }));
    fs::permissions(loose, fs::perms(0777));
    EXPECT_NE("", complaintsOf(loose, [] {
                  EXPECT_EQ(ERROR_ACCESS_DENIED, tryOpen(HKEY_CURRENT_USER, "Software"));
                  EXPECT_EQ(ERROR_ACCESS_DENIED, write(HKEY_LOCAL_MACHINE, "Software", "x", "1"));
              }));
    EXPECT_FALSE(fs::exists(loose + "/machine.db"));
}

TEST_F(RegistryFileTest, LetsOthersReadTheMachinesFileOnly) {
    write(HKEY_LOCAL_MACHINE, "Software\\Classes\\x", "", "machine's");
    fs::permissions(folder(), fs::perms(0755));
    fs::permissions(file("machine.db"), fs::perms(0444));
    EXPECT_EQ("", complaintsOf(folder(), [&] {
                  becomeNobody();
                  EXPECT_EQ("machine's", read(HKEY_LOCAL_MACHINE, "Software\\Classes\\x", ""));
                  EXPECT_EQ(ERROR_ACCESS_DENIED, write(HKEY_LOCAL_MACHINE, "Software", "x", "1"));
                  EXPECT_EQ(ERROR_ACCESS_DENIED, make(HKEY_LOCAL_MACHINE, "Software\\new"));
                  EXPECT_EQ(ERROR_ACCESS_DENIED,
                            RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software\\Classes\\x"));
                  EXPECT_EQ(ERROR_ACCESS_DENIED,
                            tryOpen(HKEY_LOCAL_MACHINE, "Software", KEY_WRITE));
              }));
    EXPECT_EQ("machine's", read(HKEY_LOCAL_MACHINE, "Software\\Classes\\x", ""));
}

TEST_F(RegistryFileTest, ReadsWhatMayNotBeWritten) {
    const std::string place = made(file("mine"));
    fs::permissions(folder(), fs::perms(0755));
    if (geteuid() == 0) {
        ASSERT_EQ(0, chown(place.c_str(), NOBODY, NOBODY));
    }
    EXPECT_TRUE(apart([&] {
        becomeNobody();
        moveTo(place);
        EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CURRENT_USER, "Software\\x", "", "user's"));
        closeFiles();
        fs::permissions(place + "/user.db", fs::perms(0400));
        fs::permissions(place, fs::perms(0500));
        EXPECT_EQ("user's", read(HKEY_CURRENT_USER, "Software\\x", ""));
        EXPECT_EQ(ERROR_ACCESS_DENIED, write(HKEY_CURRENT_USER, "Software\\x", "", "other"));
        EXPECT_EQ("user's", read(HKEY_CURRENT_USER, "Software\\x", ""));
        fs::permissions(place, fs::perms(0700));
        fs::permissions(place + "/user.db", fs::perms(0600));
        EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CURRENT_USER, "Software\\x", "", "other"));
        EXPECT_EQ("other", read(HKEY_CURRENT_USER, "Software\\x", ""));
    }));
}

TEST_F(RegistryFileTest, WaitsForALockAndThenGivesUp) {
    write(HKEY_CURRENT_USER, "Software", "x", "before");
    Pipe locked;
    Pipe release;
    const pid_t holder = startApart([&] {
        Intruder intruder(file("user.db"));
        intruder.run("BEGIN IMMEDIATE");
        locked.put();
        release.take();
        intruder.run("COMMIT");
    });
    locked.take();
    const std::string complaints = complaintsOf(folder(), [] {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(ERROR_LOCK_FAILED, write(HKEY_CURRENT_USER, "Software", "x", "refused"));
        EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
        EXPECT_EQ("before", read(HKEY_CURRENT_USER, "Software", "x")) << "readers need not wait";
        EXPECT_EQ(ERROR_SUCCESS, write(HKEY_LOCAL_MACHINE, "Software", "x", "1"));
    });
    EXPECT_EQ(1, std::count(complaints.begin(), complaints.end(), '\n')) << complaints;

    Pipe ready;
    const pid_t writer = startApart([&] {
        ready.put();
        EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CURRENT_USER, "Software", "x", "after"));
    });
    ready.take();
    release.put();
    EXPECT_TRUE(ended(writer));
    EXPECT_TRUE(ended(holder));
    EXPECT_EQ("after", read(HKEY_CURRENT_USER, "Software", "x"));
}

TEST_F(RegistryFileTest, LetsSeveralProcessesWriteAtOnce) {
    constexpr int PROCESSES = 5;
    constexpr int WRITES = 40;
    const std::string place = file("shared");
    std::vector<pid_t> writers;
    writers.reserve(PROCESSES);
    for (int process = 0; process < PROCESSES; ++process) {
        writers.push_back(startApart([&, process] {
            moveTo(place);  // Where nobody has made the files yet.
            for (int i = 0; i < WRITES; ++i) {
                const std::string own = std::to_string(process * WRITES + i);
                for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
                    EXPECT_EQ(ERROR_SUCCESS, write(root, "Shared\\Key", own, own));
                    EXPECT_EQ(own, read(root, "shared\\key", own));
                    EXPECT_EQ(ERROR_SUCCESS, make(root, "Shared\\" + std::to_string(i)));
                }
            }
        }));
    }
    for (const pid_t writer : writers) {
        EXPECT_TRUE(ended(writer));
    }
    EXPECT_TRUE(apart([&] {
        moveTo(place);
        for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
            const HKEY shared = open(root, "Shared", KEY_READ);
            EXPECT_EQ(std::size_t{WRITES + 1}, subkeys(shared).size());
            EXPECT_EQ(std::size_t{PROCESSES * WRITES},
                      values(open(shared, "Key", KEY_READ)).size());
        }
    }));
    const auto isDraft = [](const fs::directory_entry& entry) {
        return entry.path().string().find(".db.") != std::string::npos;
    };
    EXPECT_EQ(0, std::count_if(fs::directory_iterator(place), {}, isDraft));
}

TEST_F(RegistryFileTest, KeepsWhatAKilledWriterHasWritten) {
    for (int round = 0; round < 5; ++round) {
        const Pipe progress;
        const pid_t writer = startApart([&] {
            for (int i = 0;; ++i) {
                write(HKEY_CURRENT_USER, "Killed\\" + std::to_string(i % 50), "x", "1");
                write(HKEY_CURRENT_USER, "Killed", "count", std::to_string(i));
                progress.put(i);
            }
        });
        int count = 0;
        while (count < 60 + round * 7) {
            count = progress.take();
        }
        kill(writer, SIGKILL);
        EXPECT_FALSE(ended(writer));
        EXPECT_GE(std::stoi(read(HKEY_CURRENT_USER, "Killed", "count")), count);
        EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CURRENT_USER, "Killed\\49", "x", "2"));
        EXPECT_EQ(50U, subkeys(open(HKEY_CURRENT_USER, "Killed")).size());
    }
}

TEST_F(RegistryFileTest, SeesOthersChangesAndKeepsItsPlaceInAList) {
    for (const char* name : {"a", "b", "c", "d"}) {
        make(HKEY_CURRENT_USER, std::string("List\\") + name);
    }
    const HKEY list = open(HKEY_CURRENT_USER, "List");
    char name[8];
    DWORD length = sizeof name;
    EXPECT_EQ(ERROR_SUCCESS, RegEnumKeyExA(list, 1, name, &length));
    EXPECT_TRUE(apart([&] {
        EXPECT_EQ(ERROR_SUCCESS, RegDeleteKeyA(list, "a")) << "handles stay good in a child";
        EXPECT_EQ(ERROR_SUCCESS, write(list, "c", "x", "child's"));
    }));
    EXPECT_EQ("child's", read(list, "c", "x"));
    length = sizeof name;
    EXPECT_EQ(ERROR_SUCCESS, RegEnumKeyExA(list, 2, name, &length));
    EXPECT_STREQ("c", name) << "behind b, whatever others have deleted before it";
}

TEST_F(RegistryFileTest, StartsAnewWhereTheFileHasBeenTakenAway) {
    const HKEY old = open(HKEY_CURRENT_USER, "Software");
    write(old, "Gone", "x", "1");
    const HKEY gone = open(old, "Gone");
    for (const char* name : {"user.db", "user.db-wal", "user.db-shm"}) {
        fs::remove(file(name));
    }
    EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CURRENT_USER, "Software\\New", "x", "2"));
    EXPECT_EQ((Names{"Classes", "New"}), subkeys(open(HKEY_CURRENT_USER, "Software")));
    EXPECT_EQ(ERROR_KEY_DELETED, RegSetValueExA(gone, "x", REG_SZ, "3", 2));
    EXPECT_TRUE(apart([] { EXPECT_EQ("2", read(HKEY_CURRENT_USER, "Software\\New", "x")); }));
}

}  // namespace
}  // namespace juntora::test
