#include <Quarry/internal/FileAccess.h>

#include <Quarry/ParserFile.h>
#include <gmock/gmock.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"
#include "support/WithoutPrivileges.h"

using Quarry::InputFile;
using Quarry::loadFile;
using Quarry::LoadResult;
using Quarry::OutputFile;
using TestSupport::TemporaryFolder;
using TestSupport::WithoutPrivileges;
using TestSupport::WorkingDirectory;

namespace {

bool refusesCompressedFiles = false;

}  // namespace

/// Stands before zlib's function in this program, so that a test can let it fail.
extern "C" gzFile gzopen(const char* path, const char* mode) {
  using Function = gzFile (*)(const char*, const char*);
  static const auto original = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "gzopen"));
  return refusesCompressedFiles ? nullptr : original(path, mode);
}

namespace {

/// As long as this lives, zlib opens no file.
class NoCompressedFiles {
 public:
  NoCompressedFiles() { refusesCompressedFiles = true; }
  NoCompressedFiles(const NoCompressedFiles&) = delete;
  NoCompressedFiles& operator=(const NoCompressedFiles&) = delete;
  ~NoCompressedFiles() { refusesCompressedFiles = false; }
};

struct Loaded {
  LoadResult result;
  std::string text;
};

Loaded load(const std::string& name, const std::string& path) {
  std::string text = "what was there before";
  unsigned long allowance = text.max_size();
  const LoadResult result = loadFile(name, path, text, allowance);
  return {result, text};
}

std::string loadText(const std::string& path) { return load(path, path).text; }

/// Loads a file that had another size when it was opened.
std::string loadChanged(const TemporaryFolder& folder, std::size_t oldSize,
                        const std::string& bytes) {
  const std::string path = folder.write("x.cfg", std::string(oldSize, 'o'));
  InputFile file;
  file.open(path);
  folder.write("x.cfg", bytes);
  std::string text;
  unsigned long allowance = text.max_size();
  EXPECT_EQ(loadFile(path, path, text, allowance, std::move(file)), LoadResult::LOADED);
  return text;
}

/// Returns the text that a compressed file with these bytes gives.
std::string expand(const std::string& bytes) {
  const TemporaryFolder folder;
  return loadText(folder.writeCompressed("file", bytes));
}

/// Returns the bytes of a compressed file.
std::string compress(const std::string& bytes) {
  const TemporaryFolder folder;
  folder.writeCompressed("file", bytes);
  return folder.read("file");
}

const std::string COMPRESSED_HEADER("\x1F\x8B\x08\0\0\0\0\0\0\x03", 10);

/// A compressed file whose first block is of a kind that there is not.
const std::string COMPRESSED_NONSENSE = COMPRESSED_HEADER + "\x07";

/// Returns the beginning of a compressed file that holds `announced` bytes as they are.
std::string beginCompressed(const std::string& bytes, unsigned announced) {
  const auto low = static_cast<char>(announced & 255U);
  const auto high = static_cast<char>(announced >> 8U);
  return COMPRESSED_HEADER + '\x01' + low + high + static_cast<char>(~low) +
         static_cast<char>(~high) + bytes;
}

/// Writes a FIFO in pieces, from a thread of its own.
class FifoWriter {
 public:
  FifoWriter(const std::string& path, const std::vector<std::string>& pieces)
      : thread([path, pieces] {
          std::ofstream fifo(path, std::ios::binary);
          for (const std::string& piece : pieces) {
            fifo << piece << std::flush;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
          }
        }) {}
  FifoWriter(const FifoWriter&) = delete;
  FifoWriter& operator=(const FifoWriter&) = delete;
  ~FifoWriter() { thread.join(); }

 private:
  std::thread thread;
};

/// Returns the descriptor that the next file to be opened gets.
int nextDescriptor() {
  const int descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
  close(descriptor);
  return descriptor;
}

void expectEraseError(const std::string& bytes) {
  try {
    expand(bytes);
    ADD_FAILURE() << "no exception";
  } catch (const std::out_of_range& error) {
    EXPECT_THAT(error.what(), testing::StartsWith("basic_string::erase"));
  }
}

}  // namespace

// --- Plain files ---------------------------------------------------------------------------------

TEST(LoadFileTest, APlainFileGivesItsBytes) {
  const TemporaryFolder folder;
  const Loaded loaded = load("x.cfg", folder.write("x.cfg", "a 1\r\nb \xFF\n"));
  EXPECT_EQ(loaded.result, LoadResult::LOADED);
  EXPECT_EQ(loaded.text, "a 1\r\nb \xFF\n");
}

TEST(LoadFileTest, AnEmptyFileGivesAnEmptyText) {
  const TemporaryFolder folder;
  const Loaded loaded = load("x.cfg", folder.write("x.cfg", ""));
  EXPECT_EQ(loaded.result, LoadResult::LOADED);
  EXPECT_EQ(loaded.text, "");
}

TEST(LoadFileTest, APlainFileIsReadUpToItsFirstZeroByte) {
  const TemporaryFolder folder;
  EXPECT_EQ(loadText(folder.write("x.cfg", std::string("a 1\n\0b 2\0", 9))), "a 1\n");
}

TEST(LoadFileTest, APlainFileOfAnyLengthIsReadWhole) {
  const TemporaryFolder folder;
  for (const std::size_t size : {1U, 16383U, 16384U, 16385U, 262143U, 262144U, 262145U, 600000U}) {
    std::string bytes(size, 'a');
    bytes.back() = 'z';
    EXPECT_EQ(loadText(folder.write("x.cfg", bytes)), bytes) << size;
  }
}

TEST(LoadFileTest, AZeroByteEndsTheTextWhereverItStands) {
  const TemporaryFolder folder;
  for (const std::size_t place : {0U, 1U, 262143U, 262144U, 262145U, 524288U, 599999U}) {
    std::string bytes(600000, 'a');
    bytes[place] = '\0';
    EXPECT_EQ(loadText(folder.write("x.cfg", bytes)), std::string(place, 'a')) << place;
  }
}

TEST(LoadFileTest, AFileIsReadWholeThatHadAnotherSizeWhenItWasOpened) {
  const TemporaryFolder folder;
  const std::string bytes(40000, 'a');
  for (const std::size_t size : {0U, 1U, 16384U, 39999U, 40000U, 40001U, 300000U}) {
    EXPECT_EQ(loadChanged(folder, size, bytes), bytes) << size;
  }
}

TEST(LoadFileTest, AFileThatTheSystemMakesUpIsReadWhole) {
  const std::string text = loadText("/proc/self/status");
  EXPECT_THAT(text, testing::StartsWith("Name:"));
  EXPECT_THAT(text, testing::HasSubstr("nonvoluntary_ctxt_switches:"));
}

TEST(LoadFileTest, ASettingOfTheSystemIsReadWhole) {
  const std::string text = loadText("/proc/sys/kernel/pid_max");
  EXPECT_GT(std::stoi(text), 9);
  EXPECT_EQ(text.back(), '\n');
}

TEST(LoadFileTest, AFifoIsReadToItsEnd) {
  const TemporaryFolder folder;
  const std::string path = folder.getPath("x.cfg");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const FifoWriter writer(path, {"a 1\n", std::string(100000, 'b'), "\nc 3\n"});
  EXPECT_EQ(loadText(path), "a 1\n" + std::string(100000, 'b') + "\nc 3\n");
}

TEST(LoadFileTest, AFifoIsNeverTakenForACompressedFile) {
  const TemporaryFolder folder;
  const std::string path = folder.getPath("x.cfg");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const FifoWriter writer(path, {"\x1F\x8B text"});
  EXPECT_EQ(loadText(path), "\x1F\x8B text");
}

TEST(LoadFileTest, ADirectoryCannotBeOpened) {
  const TemporaryFolder folder;
  EXPECT_EQ(load(folder.getPath(), folder.getPath()).result, LoadResult::NOT_OPENED);
}

TEST(LoadFileTest, NoFileStaysOpen) {
  const TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", "a 1");
  const std::string compressed = folder.writeCompressed("y.cfg", "a 1$\n");
  const int before = nextDescriptor();
  load(path, path);
  load("other name", path);
  load(compressed, compressed);
  load(compressed, path);
  load(folder.getPath(), folder.getPath());
  EXPECT_EQ(nextDescriptor(), before);
}

TEST(LoadFileTest, AFileOfOneByteIsNotCompressed) {
  const TemporaryFolder folder;
  EXPECT_EQ(loadText(folder.write("x.cfg", "\x1F")), "\x1F");
}

TEST(LoadFileTest, AFileWithHalfOfTheSignatureIsNotCompressed) {
  const TemporaryFolder folder;
  EXPECT_EQ(loadText(folder.write("x.cfg", "\x1F\x8C text")), "\x1F\x8C text");
}

TEST(LoadFileTest, AFileWithAUtf8NameIsLoaded) {
  const TemporaryFolder folder;
  EXPECT_EQ(loadText(folder.write("m\xC3\xBCll.cfg", "a 1")), "a 1");
}

TEST(LoadFileTest, AFileWhoseNameIsNoUtf8IsLoaded) {
  const TemporaryFolder folder;
  EXPECT_EQ(loadText(folder.write("m\xFCll.cfg", "a 1")), "a 1");
}

TEST(LoadFileTest, ANameWithAZeroByteOpensNothing) {
  const TemporaryFolder folder;
  const std::string path = folder.write("x", "a 1") + std::string("\0y", 2);
  EXPECT_EQ(load(path, path).result, LoadResult::NOT_OPENED);
}

TEST(LoadFileTest, AFileThatCannotBeOpenedIsToldSo) {
  const TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", "a 1");
  std::filesystem::permissions(path, std::filesystem::perms::none);
  const WithoutPrivileges ordinary;
  EXPECT_EQ(load(path, path).result, LoadResult::NOT_OPENED);
}

TEST(LoadFileTest, WhatTheTextHeldBeforeIsGoneWhenNothingWasOpened) {
  EXPECT_EQ(load("missing", "/missing/file").text, "");
}

// --- The compression probe -----------------------------------------------------------------------

TEST(LoadFileTest, ACompressedFileThatOnlyASearchPathFindsIsReadAsItIs) {
  const TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", "\x1F\x8B text");
  EXPECT_EQ(load("x.cfg", path).text, "\x1F\x8B text");
}

TEST(LoadFileTest, TheCompressedFileUnderTheBareNameIsTakenBeforeTheLocatedOne) {
  const TemporaryFolder folder;
  folder.writeCompressed("x.cfg", "compressed$\n");
  const std::string located = folder.write("dir/x.cfg", "located");
  const WorkingDirectory directory(folder.getPath());
  EXPECT_EQ(load("x.cfg", located).text, "compressed\n");
}

TEST(LoadFileTest, ACompressedFileThatIsFoundUnderItsOwnNameIsExpanded) {
  const TemporaryFolder folder;
  const std::string path = folder.writeCompressed("x.cfg", "a 1$\nb 2$\n");
  EXPECT_EQ(load(path, path).text, "a 1\nb 2\n");
}

TEST(LoadFileTest, ACompressedFileThatAnotherSpellingOfItsNameFindsIsExpanded) {
  const TemporaryFolder folder;
  folder.writeCompressed("dir/x.cfg", "a 1$\n");
  const WorkingDirectory directory(folder.getPath());
  EXPECT_EQ(load("dir/x.cfg", "./dir//x.cfg").text, "a 1\n");
}

TEST(LoadFileTest, APlainFileUnderTheBareNameLeavesTheLocatedOne) {
  const TemporaryFolder folder;
  folder.write("x.cfg", "bare");
  const std::string located = folder.write("dir/x.cfg", "located");
  const WorkingDirectory directory(folder.getPath());
  EXPECT_EQ(load("x.cfg", located).text, "located");
}

TEST(LoadFileTest, AFifoUnderTheBareNameDoesNotBlock) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.getPath("x.cfg").c_str(), 0600), 0);
  const std::string located = folder.write("dir/x.cfg", "located");
  const WorkingDirectory directory(folder.getPath());
  EXPECT_EQ(load("x.cfg", located).text, "located");
}

TEST(LoadFileTest, ACompressedFileThatCannotBeOpenedIsToldSoWithAnEmptyText) {
  const TemporaryFolder folder;
  const std::string path = folder.writeCompressed("x.cfg", "a 1$\n");
  const NoCompressedFiles refusal;
  const Loaded loaded = load(path, path);
  EXPECT_EQ(loaded.result, LoadResult::COMPRESSED_NOT_OPENED);
  EXPECT_EQ(loaded.text, "");
}

TEST(LoadFileTest, ADocumentWhoseCompressedFileCannotBeOpenedReadsAsEmpty) {
  const TemporaryFolder folder;
  const std::string path = folder.writeCompressed("x.cfg", "a 1$\n");
  const NoCompressedFiles refusal;
  const TestSupport::RecordingConsole console;
  Quarry::ParserFile file;
  EXPECT_TRUE(file.read(path));
  EXPECT_EQ(file.getVersion(), 1.0);
  EXPECT_EQ(console.getWarnings(),
            std::vector<std::string>({"Failed to open file '" + path + "'.\n"}));
}

TEST(LoadFileTest, AFileOfOneByteUnderTheBareNameIsNotCompressed) {
  const TemporaryFolder folder;
  folder.write("x.cfg", "\x1f");
  const std::string located = folder.write("dir/x.cfg", "located");
  const WorkingDirectory directory(folder.getPath());
  EXPECT_EQ(load("x.cfg", located).text, "located");
}

// --- Compressed lines ----------------------------------------------------------------------------

TEST(LoadFileTest, ALineOfACompressedFileThatEndsInADollarKeepsItsLineBreak) {
  EXPECT_EQ(expand("a 1$\nb 2$\n"), "a 1\nb 2\n");
}

TEST(LoadFileTest, ALineOfACompressedFileThatEndsInAnotherByteLosesItAndIsJoined) {
  EXPECT_EQ(expand("a 1-\n b 2$\n"), "a 1 b 2\n");
}

TEST(LoadFileTest, ABlankIsAMarkerLikeAnyOther) { EXPECT_EQ(expand("a \nb \n"), "ab"); }

TEST(LoadFileTest, ALineOfOnlyADollarIsALineBreak) { EXPECT_EQ(expand("$\n$\n"), "\n\n"); }

TEST(LoadFileTest, ALineOfOnlyAnotherMarkerIsNothing) { EXPECT_EQ(expand("-\na$\n"), "a\n"); }

TEST(LoadFileTest, ALastLineWithoutALineFeedLosesItsLastTwoBytes) {
  EXPECT_EQ(expand("a 1$\nb 2$!"), "a 1\nb 2\n");
  EXPECT_EQ(expand("a 1$\nb 2$"), "a 1\nb ");
}

TEST(LoadFileTest, ADollarWithinALineStays) { EXPECT_EQ(expand("a$b$$\n"), "a$b$\n"); }

TEST(LoadFileTest, AnEmptyCompressedFileGivesAnEmptyText) {
  const TemporaryFolder folder;
  const std::string path = folder.writeCompressed("x.cfg", "");
  const Loaded loaded = load(path, path);
  EXPECT_EQ(loaded.result, LoadResult::LOADED);
  EXPECT_EQ(loaded.text, "");
}

TEST(LoadFileTest, AnEmptyCompressedLineRaisesTheStandardError) {
  expectEraseError("a 1$\n\nb$\n");
}

TEST(LoadFileTest, ALastCompressedLineOfOneByteRaisesTheStandardError) {
  expectEraseError("a 1$\nb");
}

TEST(LoadFileTest, ACompressedLineThatBeginsWithAZeroByteRaisesTheStandardError) {
  expectEraseError(std::string("a 1$\n\0b$\n", 9));
}

TEST(LoadFileTest, ACompressedLineEndsAtItsFirstZeroByte) {
  EXPECT_EQ(expand(std::string("ab$!\0cd$\ne$\n", 12)), "ab\ne\n");
}

TEST(LoadFileTest, ALineOf8189BytesAndItsLineFeedComesBackInOnePiece) {
  const std::string line(8188, 'x');
  EXPECT_EQ(expand(line + "$\n"), line + "\n");
}

TEST(LoadFileTest, EachPieceOfALongerLineLosesItsLastTwoBytes) {
  const std::string piece = std::string(8188, 'x') + "ab";
  EXPECT_EQ(expand(piece + piece + "rest$\n"), std::string(16376, 'x') + "rest\n");
}

TEST(LoadFileTest, ADollarBeforeTheLastByteOfAPieceBecomesALineBreak) {
  EXPECT_EQ(expand(std::string(8188, 'x') + "$brest$\n"), std::string(8188, 'x') + "\nrest\n");
}

TEST(LoadFileTest, ALineFeedRightBehindAFullPieceIsAnEmptyLineAndRaisesTheStandardError) {
  expectEraseError(std::string(8189, 'x') + "$\nrest$\n");
}

TEST(LoadFileTest, SeveralCompressedPartsAreReadAsOne) {
  const TemporaryFolder folder;
  EXPECT_EQ(loadText(folder.write("x.cfg", compress("a 1$\n") + compress("b 2$\n"))), "a 1\nb 2\n");
}

TEST(LoadFileTest, ALongCompressedFileIsReadToItsEnd) {
  std::string bytes;
  std::string text;
  for (int i = 0; i < 20000; ++i) {
    bytes += "item_" + std::to_string(i) + " 1$\n";
    text += "item_" + std::to_string(i) + " 1\n";
  }
  EXPECT_EQ(expand(bytes), text);
}

// --- Broken compressed files ---------------------------------------------------------------------

TEST(LoadFileTest, AFileOfTheSignatureAloneGivesAnEmptyText) {
  const TemporaryFolder folder;
  EXPECT_EQ(loadText(folder.write("x.cfg", "\x1F\x8B")), "");
}

TEST(LoadFileTest, AFileThatOnlyPretendsToBeCompressedGivesAnEmptyText) {
  const TemporaryFolder folder;
  const std::string path = folder.write("x.cfg", COMPRESSED_NONSENSE);
  const Loaded loaded = load(path, path);
  EXPECT_EQ(loaded.result, LoadResult::LOADED);
  EXPECT_EQ(loaded.text, "");
}

TEST(LoadFileTest, ACompressedFileWithoutItsChecksumGivesItsLines) {
  const TemporaryFolder folder;
  const std::string bytes = compress("a 1$\nb 2$\n");
  EXPECT_EQ(loadText(folder.write("x.cfg", bytes.substr(0, bytes.size() - 8))), "a 1\nb 2\n");
}

TEST(LoadFileTest, TheLastLineOfACompressedFileCutShortLosesItsLastTwoBytes) {
  const TemporaryFolder folder;
  const std::string bytes = beginCompressed("alpha 1$\nbeta 2$\ngamma", 1000);
  EXPECT_EQ(loadText(folder.write("x.cfg", bytes)), "alpha 1\nbeta 2\ngam");
}

TEST(LoadFileTest, ACompressedFileWithAWrongChecksumEndsWithoutAnError) {
  const TemporaryFolder folder;
  std::string bytes = compress("a 1$\n");
  bytes[bytes.size() - 5] = static_cast<char>(bytes[bytes.size() - 5] ^ 1);
  const std::string path = folder.write("x.cfg", bytes);
  EXPECT_EQ(load(path, path).result, LoadResult::LOADED);
}

TEST(LoadFileTest, LinesWellBeforeTheDamageOfACompressedFileAreKept) {
  std::string bytes;
  std::string text;
  for (int i = 0; i < 20000; ++i) {
    bytes += "item_" + std::to_string(i) + " 1$\n";
    text += "item_" + std::to_string(i) + " 1\n";
  }
  const TemporaryFolder folder;
  const std::string part = loadText(folder.write("x.cfg", compress(bytes) + COMPRESSED_NONSENSE));
  EXPECT_THAT(part, testing::StartsWith("item_0 1\nitem_1 1\n"));
  EXPECT_THAT(text, testing::StartsWith(part));
}

// --- OutputFile ----------------------------------------------------------------------------------

TEST(OutputFileTest, WritingMakesAFile) {
  const TemporaryFolder folder;
  OutputFile file(folder.getPath("x.cfg"));
  ASSERT_TRUE(file.isOpen());
  EXPECT_TRUE(file.write("a 1"));
  EXPECT_EQ(folder.read("x.cfg"), "a 1");
}

TEST(OutputFileTest, OpeningEmptiesAFile) {
  const TemporaryFolder folder;
  const OutputFile file(folder.write("x.cfg", "a longer text"));
  ASSERT_TRUE(file.isOpen());
  EXPECT_EQ(folder.read("x.cfg"), "");
}

TEST(OutputFileTest, AFullDeviceTakesNothing) {
  OutputFile file("/dev/full");
  ASSERT_TRUE(file.isOpen());
  EXPECT_TRUE(file.write(""));
  EXPECT_FALSE(file.write("a 1"));
  EXPECT_EQ(errno, ENOSPC);
}

TEST(OutputFileTest, AFolderIsNotOpened) {
  const TemporaryFolder folder;
  EXPECT_FALSE(OutputFile(folder.getPath()).isOpen());
}

TEST(OutputFileTest, ANameWithAZeroByteIsNotWritten) {
  const TemporaryFolder folder;
  EXPECT_FALSE(OutputFile(folder.getPath("x") + std::string("\0y", 2)).isOpen());
  EXPECT_FALSE(std::filesystem::exists(folder.getPath("x")));
}
