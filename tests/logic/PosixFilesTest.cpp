#include "platform/posix/PosixFiles.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

namespace velmora {

namespace fs = std::filesystem;

/// Runs with a kernel that gives this error for this system call. Short writes go on: the sanitizers
/// try the memory with them.
void WithFailing(unsigned call, unsigned error, const std::function<void()>& run)
{
    const unsigned shortest = call == SYS_write ? 1000 : 0;
    // What a thread has forbidden itself ends with it.
    std::thread([&] {
        sock_filter filter[] = {{BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
                                {BPF_JMP | BPF_JEQ | BPF_K, 0, 3, call},
                                {BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, args[2])},
                                {BPF_JMP | BPF_JGE | BPF_K, 0, 1, shortest},
                                {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | error},
                                {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW}};
        const sock_fprog program{std::size(filter), filter};
        ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
        ASSERT_EQ(::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program), 0);
        run();
    }).join();
}

std::function<void()> beforeNextLock;

class PosixFilesTest : public testing::Test {
protected:
    PosixFilesTest()
    {
        std::string pattern = (fs::temp_directory_path() / "velmora-files-XXXXXX").string();
        folder = mkdtemp(pattern.data());
    }
    ~PosixFilesTest() override
    {
        fs::permissions(folder, fs::perms::owner_all);
        fs::remove_all(folder);
    }

    std::string Path(const std::string& name) const { return folder + "/" + name; }
    std::string Names()
    {
        std::string names;
        for (const auto& file : files.List(folder)) names += file.Name + ":" + std::to_string(file.Size) + " ";
        return names;
    }
    /// How many names the folder really holds.
    std::ptrdiff_t OnDisk() const { return std::distance(fs::directory_iterator(folder), {}); }
    static unsigned ModeOf(const std::string& path)
    {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    std::string folder;
    PosixFiles files;
};

TEST_F(PosixFilesTest, WritesReplaceWholeFilesThatOnlyTheOwnerReads)
{
    const std::string bytes("a\0\xFF\r\n", 5);
    files.Write(Path("a.xml"), "a longer text of before");
    files.Write(Path("a.xml"), bytes);
    EXPECT_EQ(files.Read(Path("a.xml")), bytes);
    EXPECT_EQ(ModeOf(Path("a.xml")), 0600u);
    EXPECT_EQ(OnDisk(), 1);
    files.MakeFolder(Path("session"));
    EXPECT_EQ(ModeOf(Path("session")), 0700u);
    EXPECT_TRUE(files.CanWrite(Path("session")));
    EXPECT_FALSE(files.CanWrite(Path("a.xml")) || files.CanWrite(Path("none")));
    EXPECT_EQ(Names(), "a.xml:5 ");
    for (const char* name : {"a.xml/under", "a.xml", "a.xml", "session"}) files.Delete(Path(name));
    EXPECT_FALSE(files.Exists(Path("a.xml")));
    EXPECT_TRUE(files.Exists(Path("session"))) << "only files are deleted";
}

TEST_F(PosixFilesTest, AWriteThatFailsLeavesTheFolderAsItWas)
{
    fs::create_directory(Path("taken.xml"));
    files.Write(Path("a.xml"), "old");
    EXPECT_THROW(files.List(Path("none")), FileError);
    for (const char* name : {"taken.xml", "a.xml/under"}) EXPECT_THROW(files.MakeFolder(Path(name)), FileError);
    for (const std::string& name : {std::string("taken.xml"), std::string("none/a.xml"), std::string("a\0.xml", 6)}) {
        EXPECT_THROW(files.Write(Path(name), "x"), FileError) << name;
    }
    std::vector<std::string> told;
    files.WriteFailed = [&told](const std::string& why) { told.push_back(why.substr(why.rfind(": "))); };
    for (const unsigned call : {unsigned{SYS_write}, unsigned{SYS_fsync}}) {
        WithFailing(call, ENOSPC, [&] { EXPECT_THROW(files.Write(Path("a.xml"), std::string(5000, 'x')), FileError); });
    }
    EXPECT_THROW(files.Write(Path("a.xml"), std::string(PosixFiles::kMaxBytes + 1, 'x')), FileError);
    EXPECT_EQ(files.Read(Path("a.xml")), "old");
    EXPECT_EQ(OnDisk(), 2);
    EXPECT_EQ(told, (std::vector<std::string>{": No space left on device", ": it would be too long to be read again"}));
}

TEST_F(PosixFilesTest, WhatCouldNotBeReadIsNotWrittenOver)
{
    files.Write(Path("a.xml"), "a");
    files.Write(Path("b.xml"), "b");
    WithFailing(SYS_getdents64, EIO, [this] { EXPECT_THROW(files.List(folder), FileError); });
    EXPECT_THROW(files.Write(Path("a.xml"), "new"), FileError);
    EXPECT_THROW(files.Delete(Path("a.xml")), FileError);
    files.Delete(Path("none.xml"));
    EXPECT_EQ(Names(), "a.xml:1 b.xml:1 ");
    WithFailing(SYS_read, EIO, [this] { EXPECT_THROW(files.Read(Path("a.xml")), FileError); });
    EXPECT_THROW(files.Write(Path("a.xml"), "new"), FileError);
    EXPECT_EQ(files.Read(Path("a.xml")), "a");
    files.Write(Path("a.xml"), "new");
    files.Write(Path("b.xml"), "new");
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
    for (const auto& file : files.List(folder)) {
        EXPECT_TRUE(file.Name.ends_with(".xml")) << file.Name;
        EXPECT_EQ(files.Read(Path(file.Name)).size(), file.Size) << "a listed name can be used as it is";
    }
    EXPECT_TRUE(files.Exists(Path(other)));
    files.Delete(Path(other));
    EXPECT_FALSE(files.Exists(Path(other)));
    EXPECT_EQ(OnDisk(), 2);
}

TEST_F(PosixFilesTest, OnlyPlainFilesAreReadAndNeverForever)
{
    ASSERT_EQ(::mkfifo(Path("pipe.xml").c_str(), 0600), 0);
    fs::create_directory(Path("folder.xml"));
    fs::create_symlink("/dev/zero", Path("zero.xml"));
    fs::create_symlink("nowhere", Path("dangling.xml"));
    for (const char* name : {"pipe.xml", "folder.xml", "zero.xml", "dangling.xml", "none.xml"}) {
        EXPECT_THROW(files.Read(Path(name)), FileError) << name;
    }
    EXPECT_EQ(Names(), "");
    std::ofstream(Path("big.xml")).close();
    fs::resize_file(Path("big.xml"), PosixFiles::kMaxBytes);
    EXPECT_EQ(files.Read(Path("big.xml")).size(), PosixFiles::kMaxBytes);
    fs::resize_file(Path("big.xml"), PosixFiles::kMaxBytes + 1);
    EXPECT_THROW(files.Read(Path("big.xml")), FileError);
}

TEST_F(PosixFilesTest, ListingRemovesWhatInterruptedWritesHaveLeft)
{
    std::ofstream(Path(".velmora-write-AbCd12")) << "half a rec";
    std::ofstream(Path(".velmora-writes.txt")) << "not ours";
    std::ofstream(Path(".velmora-write-LoCk12")) << "another process writes";
    const int writer = ::open(Path(".velmora-write-LoCk12").c_str(), O_RDWR);
    ASSERT_EQ(::flock(writer, LOCK_EX), 0);
    files.Write(Path("a.xml"), "1");
    EXPECT_EQ(Names(), ".velmora-writes.txt:8 a.xml:1 ") << "what is being written is not listed";
    EXPECT_FALSE(files.Exists(Path(".velmora-write-AbCd12")));
    EXPECT_TRUE(files.Exists(Path(".velmora-write-LoCk12")));
    ::close(writer);
    EXPECT_EQ(Names(), ".velmora-writes.txt:8 a.xml:1 ");
    EXPECT_EQ(OnDisk(), 2);
    beforeNextLock = [this] { PosixFiles().List(folder); };
    files.Write(Path("a.xml"), "another copy starts in the middle of it");
    EXPECT_EQ(Names(), ".velmora-writes.txt:8 a.xml:39 ");
}

TEST_F(PosixFilesTest, ListingTakesTheRightsOfOthersToRecords)
{
    for (const char* name : {"a.XML", "b.txt"}) std::ofstream(Path(name)) << "1";
    for (const char* name : {"", "a.XML", "b.txt"}) ::chmod(Path(name).c_str(), 0755);
    fs::create_symlink("b.txt", Path("link.xml"));
    files.List(folder);
    EXPECT_EQ(ModeOf(folder), 0700U);
    EXPECT_EQ(ModeOf(Path("a.XML")), 0600U);
    EXPECT_EQ(ModeOf(Path("b.txt")), 0755U);
    EXPECT_TRUE(fs::exists(PosixFiles().ProgramFolder() + "/velmora_logic_tests"));
}

}  // namespace velmora

extern "C" int flock(int fd, int operation) noexcept
{
    if (velmora::beforeNextLock) std::exchange(velmora::beforeNextLock, nullptr)();
    return static_cast<int>(::syscall(SYS_flock, fd, operation));
}
