#include "platform/posix/PosixFiles.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>

namespace velmora {

namespace fs = std::filesystem;

/// While it lives, no file of this process can grow beyond a few bytes.
class FullDisk {
public:
    FullDisk()
    {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit small{1000, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    void (*handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before_{};
};

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
    EXPECT_TRUE(files.Exists(Path("session")) && files.CanWrite(Path("session")));
    EXPECT_FALSE(files.CanWrite(Path("a.xml")) || files.CanWrite(Path("none")));
    EXPECT_EQ(Names(), "a.xml:5 ");
    EXPECT_THROW(files.MakeFolder(Path("session")), FileError);
    EXPECT_THROW(files.MakeFolder(Path("a.xml/under")), FileError);
    files.Delete(Path("a.xml"));
    files.Delete(Path("a.xml"));
    files.Delete(Path("session"));
    EXPECT_FALSE(files.Exists(Path("a.xml")));
    EXPECT_TRUE(files.Exists(Path("session"))) << "only files are deleted";
}

TEST_F(PosixFilesTest, AWriteThatFailsLeavesTheFolderAsItWas)
{
    fs::create_directory(Path("taken.xml"));
    EXPECT_THROW(files.Write(Path("taken.xml"), "x"), FileError);
    EXPECT_EQ(OnDisk(), 1);
    EXPECT_THROW(files.Write(Path("none/a.xml"), "x"), FileError);
    EXPECT_THROW(files.Write(Path(std::string("a\0.xml", 6)), "x"), FileError);
    EXPECT_THROW(files.List(Path("none")), FileError);
    files.Write(Path("a.xml"), "old");
    {
        const FullDisk full;
        EXPECT_THROW(files.Write(Path("a.xml"), std::string(100000, 'x')), FileError);
    }
    EXPECT_EQ(files.Read(Path("a.xml")), "old");
    EXPECT_EQ(OnDisk(), 2);
}

TEST_F(PosixFilesTest, NamesThatAreTooLongAreMappedAlikeEverywhere)
{
    const std::string fits = std::string(251, 'a') + ".xml";
    const std::string longer = std::string(252, 'a') + ".xml";
    const std::string other = std::string(3000, 'a') + ".xml";
    int n = 0;
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
    fs::resize_file(Path("big.xml"), PosixFiles::kMaxReadBytes);
    EXPECT_EQ(files.Read(Path("big.xml")).size(), PosixFiles::kMaxReadBytes);
    fs::resize_file(Path("big.xml"), PosixFiles::kMaxReadBytes + 1);
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
}

TEST_F(PosixFilesTest, KnowsWhereTheProgramLies)
{
    EXPECT_TRUE(fs::exists(files.ProgramFolder() + "/velmora_logic_tests"));
    EXPECT_EQ(PosixFiles(folder).ProgramFolder(), folder);
}

}  // namespace velmora
