// The files of the program on real disks: as they are, full, locked up, and beside copies that are killed.
#include "platform/posix/PosixFiles.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "tests/support/LogicHarness.h"

namespace velmora::test {

namespace fs = std::filesystem;

/// Runs with a kernel that gives this error for this system call.
void WithFailing(unsigned call, unsigned error, const std::function<void()>& run)
{
    // What a thread has forbidden itself ends with it.
    std::thread([&] {
        sock_filter filter[] = {{BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
                                {BPF_JMP | BPF_JEQ | BPF_K, 0, 1, call},
                                {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | error},
                                {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW}};
        const sock_fprog program{std::size(filter), filter};
        ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
        ASSERT_EQ(::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program), 0);
        run();
    }).join();
}

std::function<void()> beforeNextLock;

/// The program with real files.
class PosixFilesTest : public LogicHarness {
protected:
    PosixFilesTest()
    {
        // In memory, if that can be: the disk would make a thousand kills slow.
        const fs::path base = fs::exists("/dev/shm") ? "/dev/shm" : fs::temp_directory_path();
        std::string pattern = (base / "velmora-files-XXXXXX").string();
        program = mkdtemp(pattern.data());
        folder = program + "/session";
        disk = &files;
        StartCopy();
    }
    ~PosixFilesTest() override { fs::remove_all(program); }

    /// Another copy of the program starts.
    void StartCopy()
    {
        files = PosixFiles(program);
        Restart();
    }

    std::string Path(const std::string& name) const { return folder + "/" + name; }
    std::string Names()
    {
        std::string names;
        for (const auto& name : files.List(folder))
            names += name + ":" + std::to_string(files.Read(Path(name)).size()) + " ";
        return names;
    }
    /// What the folder really holds.
    std::map<std::string, std::string> OnDisk() const
    {
        std::map<std::string, std::string> texts;
        for (const auto& entry : fs::directory_iterator(folder)) {
            std::ostringstream text;
            if (entry.is_regular_file()) text << std::ifstream(entry.path()).rdbuf();
            texts[entry.path().filename()] = text.str();
        }
        return texts;
    }
    static unsigned ModeOf(const std::string& path) { return static_cast<unsigned>(fs::status(path).permissions()); }

    /// A small disk of this process's own at the folder.
    void MakeDisk() const
    {
        const std::string user = "0 " + std::to_string(::geteuid()) + " 1";
        const std::string group = "0 " + std::to_string(::getegid()) + " 1";
        ASSERT_EQ(::unshare(CLONE_NEWUSER | CLONE_NEWNS), 0);
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << user;
        std::ofstream("/proc/self/gid_map") << group;
        ASSERT_TRUE(Mount("tmpfs", 0));
    }
    bool Mount(const char* type, unsigned long flags, const std::string& name = {}) const
    {
        return ::mount(Path(name).c_str(), Path(name).c_str(), type, flags, "size=1m,nr_inodes=200,mode=0700") == 0;
    }

    /// A copy starts where something is wrong, which the user is told, or not, and does what changes a folder: each
    /// thing is done whole, or is refused and leaves no trace. The next start, with all well again, removes what a
    /// killed write has left.
    void ExpectRefused(const std::string& refused, const std::function<void()>& strike)
    {
        SCOPED_TRACE(refused);
        for (const char* name : {"old.xml", "other.xml"}) files.Write(Path(name), name);
        std::ofstream(Path(".velmora-writes.txt")) << "not ours";
        auto expected = OnDisk();
        std::ofstream(Path(".velmora-write-AbCd12")) << "half a rec";
        strike();
        StartCopy();
        const std::string notice = "The session folder cannot be used: " + folder +
                                   "\nRecords will not be kept. Make it a folder that you may list and write, then "
                                   "start Velmora again. (!)";
        std::string told = Shown() == Lines{notice} ? "told: " : "";
        const auto attempt = [&](const char* what, const std::function<void()>& change) {
            try {
                change();
            } catch (const FileError&) {
                told += what;
            }
        };
        const std::string text(20'000, 'x');
        attempt("replace ", [&] { files.Write(Path("old.xml"), text), expected["old.xml"] = text; });
        attempt("add ", [&] { files.Write(Path("new.xml"), text), expected["new.xml"] = text; });
        attempt("folder ", [&] { files.MakeFolder(Path("sub")), expected["sub"]; });
        attempt("delete ", [&] { files.Delete(Path("other.xml")), expected.erase("other.xml"); });
        ::umount(Path("old.xml").c_str());
        Mount(nullptr, MS_REMOUNT);
        ::chmod(folder.c_str(), 0700);
        fs::remove_all(Path("fill"));
        StartCopy();
        EXPECT_EQ(told, refused);
        EXPECT_EQ(OnDisk(), expected);
        for (const auto& entry : fs::directory_iterator(folder)) fs::remove_all(entry);
    }

    std::string program;
    std::string folder;  ///< Of the sessions.
    PosixFiles files;
};

TEST_F(PosixFilesTest, WritesReplaceWholeFilesThatOnlyTheOwnerReads)
{
    const std::string bytes("a\0\xFF\r\n", 5);
    files.Write(Path("a.xml"), "a longer text of before");
    files.Write(Path("a.xml"), bytes);
    EXPECT_EQ(files.Read(Path("a.xml")), bytes);
    EXPECT_EQ(ModeOf(Path("a.xml")), 0600u);
    EXPECT_EQ(OnDisk().size(), 1U);
    files.MakeFolder(Path("folder"));
    EXPECT_EQ(ModeOf(Path("folder")), 0700u);
    EXPECT_FALSE(files.CanWrite(Path("a.xml")) || files.CanWrite(Path("none")));
    EXPECT_EQ(Names(), "a.xml:5 ");
    for (const char* name : {"a.xml/under", "a.xml", "a.xml", "folder"}) files.Delete(Path(name));
    EXPECT_FALSE(files.Exists(Path("a.xml")));
    EXPECT_TRUE(files.Exists(Path("folder"))) << "only files are deleted";
    beforeNextLock = [this] { PosixFiles().List(folder); };
    files.Write(Path("a.xml"), "another copy starts in the middle of it");
    EXPECT_EQ(Names(), "a.xml:39 ");
}

TEST_F(PosixFilesTest, AWriteThatFailsIsToldOnceAndLeavesTheOldFile)
{
    files.Write(Path("a.xml"), "old");
    EXPECT_THROW(files.Read(Path(std::string("a.xml\0", 6))), FileError);
    std::vector<std::string> told;
    files.WriteFailed = [&told](const std::string& why) { told.push_back(why.substr(why.rfind(": "))); };
    const auto fail = [this] { EXPECT_THROW(files.Write(Path("a.xml"), std::string(5000, 'x')), FileError); };
    for (int i = 0; i < 2; ++i) WithFailing(SYS_fsync, ENOSPC, fail);
    EXPECT_THROW(files.Write(Path("a.xml"), std::string(PosixFiles::kMaxBytes + 1, 'x')), FileError);
    EXPECT_EQ(OnDisk(), (std::map<std::string, std::string>{{"a.xml", "old"}}));
    EXPECT_EQ(told, (std::vector<std::string>{": No space left on device", ": it would be too long to be read again"}));
}

TEST_F(PosixFilesTest, WhatCouldNotBeReadIsNotWrittenOver)
{
    files.Write(Path("a.xml"), "a");
    WithFailing(SYS_getdents64, EIO, [this] { EXPECT_THROW(files.List(folder), FileError); });
    EXPECT_EQ(Names(), "a.xml:1 ");
    for (const char* name : {"a.xml", "none.xml"}) {
        WithFailing(SYS_read, EIO, [&] { EXPECT_THROW(files.Read(Path(name)), FileError); });
    }
    EXPECT_THROW(files.Write(Path("a.xml"), "new"), FileError);
    WithFailing(SYS_clone3, EAGAIN, [this] { EXPECT_EQ(Names(), "a.xml:1 ") << "without a thread that reads ahead"; });
    files.Write(Path("a.xml"), "b");
    WithFailing(SYS_read, EIO, [this] { EXPECT_THROW(Names(), FileError) << "by the thread that reads ahead"; });
    EXPECT_THROW(files.Write(Path("a.xml"), "new"), FileError);
    EXPECT_EQ(files.Read(Path("a.xml")), "b");
    for (const char* name : {"a.xml", "none.xml"}) files.Write(Path(name), "new");
}

TEST_F(PosixFilesTest, NamesThatAreTooLongAreMappedAlikeEverywhere)
{
    const std::string fits = std::string(251, 'a') + ".xml";
    const std::string longer = std::string(252, 'a') + ".xml";
    const std::string other = std::string(3000, 'a') + ".xml";
    int n = 0;
    EXPECT_LE(PosixFiles::DiskName(fits, 143).size(), 143U) << "a file system with a lower limit";
    for (const auto& name : {fits, longer, other}) files.Write(Path(name), std::to_string(++n));
    EXPECT_TRUE(fs::exists(Path(fits)));
    EXPECT_EQ(files.Read(Path(fits)) + files.Read(Path(longer)) + files.Read(Path(other)), "123");
    for (const auto& name : files.List(folder)) {
        EXPECT_TRUE(name.ends_with(".xml")) << name;
        EXPECT_EQ(files.Read(Path(name)).size(), 1U) << "a listed name can be used as it is";
    }
    EXPECT_TRUE(files.Exists(Path(other)));
    files.Delete(Path(other));
    EXPECT_FALSE(files.Exists(Path(other)));
    EXPECT_EQ(OnDisk().size(), 2U);
}

TEST_F(PosixFilesTest, OnlyPlainFilesAreReadAndReplacedAndNothingIsWaitedFor)
{
    ASSERT_EQ(::mkfifo(Path("pipe.xml").c_str(), 0600), 0);
    fs::create_directory(Path("folder.xml"));
    fs::create_symlink("/dev/zero", Path("zero.xml"));
    fs::create_symlink("loop.xml", Path("loop.xml"));
    fs::create_symlink("nowhere", Path("dangling.xml"));
    for (const char* name : {"pipe.xml", "folder.xml", "zero.xml", "dangling.xml"}) {
        EXPECT_THROW(files.Read(Path(name)), FileError) << name;
    }
    EXPECT_EQ(Names(), "");
    StartCopy();
    for (const char* name : {"pipe.xml", "folder.xml", "loop.xml"}) {
        EXPECT_THROW(files.Write(Path(name), "x"), FileError) << name;
    }
    files.Delete(Path("pipe.xml"));
    EXPECT_TRUE(fs::is_fifo(Path("pipe.xml")));
    std::ofstream(Path("big.xml")).close();
    fs::resize_file(Path("big.xml"), PosixFiles::kMaxBytes);
    EXPECT_EQ(files.Read(Path("big.xml")).size(), PosixFiles::kMaxBytes);
    fs::resize_file(Path("big.xml"), PosixFiles::kMaxBytes + 1);
    EXPECT_THROW(files.Read(Path("big.xml")), FileError);
}

TEST_F(PosixFilesTest, ListingTakesTheRightsOfOthersToRecords)
{
    for (const char* name : {"a.XML", "b.txt"}) std::ofstream(Path(name)) << "1";
    for (const char* name : {"", "a.XML", "b.txt"}) ::chmod(Path(name).c_str(), 0755);
    fs::create_symlink("b.txt", Path("link.xml"));
    EXPECT_EQ(Names(), "a.XML:1 b.txt:1 link.xml:1 ");
    EXPECT_EQ(ModeOf(folder), 0700U);
    EXPECT_EQ(ModeOf(Path("a.XML")), 0600U);
    EXPECT_EQ(ModeOf(Path("b.txt")), 0755U);
    EXPECT_TRUE(fs::exists(PosixFiles().ProgramFolder() + "/velmora_logic_tests"));
}

TEST_F(PosixFilesTest, NothingIsLostOnADiskThatIsFullOrLocked)
{
    if (std::system("unshare --map-root-user --mount mount -t tmpfs none /tmp") != 0)
        GTEST_SKIP() << "no right to mount";
    const auto fill = [this](int count, std::size_t size) {
        files.List(folder);
        fs::create_directory(Path("fill"));
        for (int i = 0; i < count; ++i) std::ofstream(Path("fill/") + std::to_string(i)) << std::string(size, 'x');
    };
    const auto run = [&]() noexcept {
        MakeDisk();
        ExpectRefused("replace add ", [&] { fill(1, 2'000'000); });
        ExpectRefused("replace add folder ", [&] { fill(300, 0); });
        ExpectRefused("replace ", [&] { ASSERT_TRUE(Mount(nullptr, MS_BIND, "old.xml")); });
        ExpectRefused("told: replace add folder delete ", [&] { ASSERT_TRUE(Mount(nullptr, MS_REMOUNT | MS_RDONLY)); });
        // From here on without the right to pass over permissions. The thread that read ahead may be just leaving.
        while (::unshare(CLONE_NEWUSER) != 0) ASSERT_EQ(errno, EINVAL);
        for (const mode_t mode : {0500U, 0400U, 0U}) {
            ExpectRefused("told: replace add folder delete ", [&] { ::chmod(folder.c_str(), mode); });
        }
        ExpectRefused("told: replace add delete ", [&] { ::chmod(folder.c_str(), 0300); });
    };
    EXPECT_EXIT((run(), ::_exit(HasFailure() ? 1 : 0)), testing::ExitedWithCode(0), "");
}

TEST_F(PosixFilesTest, CopiesThatAreKilledLeaveEachRecordWholeAndNothingElse)
{
#ifdef __SANITIZE_ADDRESS__
    constexpr int kKills = 100;  // A process costs ten times as much.
#else
    constexpr int kKills = 1000;
#endif
    constexpr int kRecords = 8;
    constexpr int kOthers = 20;  // For each record. With such names a listing comes in pieces.
    const auto recordOf = [](int n) {
        const std::string length(static_cast<std::size_t>(n % 97), 'x');
        return RecordItem{"Form", std::to_string(n), "http://shop/" + std::to_string(n % kRecords), "", length, "",
                          "f"};
    };
    const auto write = [&](int n) {
        const std::string name = std::string(240, 'o') + std::to_string(n % kRecords);
        for (int i = 0; i < kOthers; ++i) files.Write(Path(name + std::to_string(i)), name);
        AddTemporary(recordOf(n));
        Press(Program().cmdSave);
    };
    // A copy starts: each record is there once and whole.
    const auto startAndLook = [&] {
        StartCopy();
        EXPECT_EQ(Program().lvwPermanent.Count(), kRecords);
        for (int i = 1; i <= Program().lvwPermanent.Count(); ++i) {
            RecordItem record;
            frmBrowser::ReadRecordItem(Program().lvwPermanent.Item(i), record);
            EXPECT_EQ(record, recordOf(std::atoi(record.Session.c_str())));
        }
        EXPECT_EQ(files.List(folder).size(), kRecords * (1 + kOthers));
    };
    for (int n = 0; n < kRecords; ++n) write(n);
    std::mt19937 instants(1);
    for (int kills = 0; kills < kKills && !HasFailure(); ++kills) {
        const pid_t writer = ::fork();
        if (writer == 0) {
            files.WriteFailed = [](const std::string&) { ::_exit(1); };
            for (int n = kills;; ++n) write(n);
        }
        startAndLook();
        ::usleep(static_cast<unsigned>(instants() % 300));
        ::kill(writer, SIGKILL);
        int status = 0;
        ::waitpid(writer, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "a write failed";
        startAndLook();
        EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), kRecords * (1 + kOthers));
    }
}

}  // namespace velmora::test

extern "C" int flock(int descriptor, int operation) noexcept
{
    if (velmora::test::beforeNextLock) std::exchange(velmora::test::beforeNextLock, nullptr)();
    return static_cast<int>(::syscall(SYS_flock, descriptor, operation));
}
