#include <Plinth/Exception.h>

#include <gtest/gtest.h>

#include <exception>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

using Plinth::Error;
using Plinth::Exception;
using Plinth::Fatal;
using Plinth::InternalError;

namespace {

/// Longer than a string's inner buffer, so that a careless copy would have to allocate.
const std::string longMessage = "a message that is too long for the small buffer of a string";

Fatal makeLocatedFatal() {
  Fatal fatal("the message");
  fatal.locate("src/lib/File", "function", 12);
  return fatal;
}

}  // namespace

// --- Message -------------------------------------------------------------------------------------

TEST(ExceptionMessageTest, IsWhatTheExceptionWasMadeFrom) {
  EXPECT_EQ(Exception("the message").getMessage(), "the message");
  EXPECT_EQ(Error("the message").getMessage(), "the message");
  EXPECT_EQ(Fatal("the message").getMessage(), "the message");
  EXPECT_EQ(InternalError("the message").getMessage(), "the message");
}

TEST(ExceptionMessageTest, IsWhat) {
  const Fatal fatal("the message");
  EXPECT_STREQ(fatal.what(), "the message");
}

TEST(ExceptionMessageTest, MayBeEmpty) {
  const Exception exception("");
  EXPECT_EQ(exception.getMessage(), "");
  EXPECT_STREQ(exception.what(), "");
}

TEST(ExceptionMessageTest, KeepsAZeroByteAtWhichWhatEnds) {
  const Exception exception(std::string("a\0b", 3));
  EXPECT_EQ(exception.getMessage(), std::string("a\0b", 3));
  EXPECT_STREQ(exception.what(), "a");
}

TEST(ExceptionMessageTest, DoesNotContainThePlace) {
  EXPECT_STREQ(makeLocatedFatal().what(), "the message");
}

// --- Place ---------------------------------------------------------------------------------------

TEST(ErrorLocateTest, SetsFileFunctionAndLine) {
  const Fatal fatal = makeLocatedFatal();
  EXPECT_EQ(fatal.getFile(), "src/lib/File");
  EXPECT_EQ(fatal.getFunction(), "function");
  EXPECT_EQ(fatal.getLine(), 12U);
}

TEST(ErrorLocateTest, ReturnsTheErrorItself) {
  InternalError error("the message");
  EXPECT_EQ(&error.locate("file", "function", 1), &error);
}

TEST(ErrorLocateTest, ReplacesAnEarlierPlace) {
  Error error("the message");
  error.locate("first", "one", 1).locate("second", "two", 2);
  EXPECT_EQ(error.getFile(), "second");
  EXPECT_EQ(error.getFunction(), "two");
  EXPECT_EQ(error.getLine(), 2U);
}

TEST(ErrorLocateTest, MayBeGivenTheErrorsOwnTexts) {
  Fatal fatal = makeLocatedFatal();
  fatal.locate(fatal.getFunction(), fatal.getFile(), 1);
  EXPECT_EQ(fatal.getFile(), "function");
  EXPECT_EQ(fatal.getFunction(), "src/lib/File");
}

TEST(ErrorLocateTest, LeavesEarlierCopiesAlone) {
  Fatal fatal = makeLocatedFatal();
  const Fatal copy(fatal);
  fatal.locate("elsewhere", "other", 99);
  EXPECT_EQ(copy.getFile(), "src/lib/File");
  EXPECT_EQ(copy.getFunction(), "function");
  EXPECT_EQ(copy.getLine(), 12U);
}

TEST(ErrorLocateTest, WithoutItThePlaceIsEmpty) {
  const Error error("the message");
  EXPECT_EQ(error.getFile(), "");
  EXPECT_EQ(error.getFunction(), "");
  EXPECT_EQ(error.getLine(), 0U);
}

// --- Catching ------------------------------------------------------------------------------------

TEST(ExceptionCatchTest, AnExceptionIsAStandardException) {
  EXPECT_THROW(throw Exception(""), std::exception);
}

TEST(ExceptionCatchTest, AnErrorIsAnExceptionAndAStandardException) {
  EXPECT_THROW(throw Error(""), Exception);
  EXPECT_THROW(throw Error(""), std::exception);
}

TEST(ExceptionCatchTest, AFatalIsEveryBaseOfIt) {
  EXPECT_THROW(throw Fatal(""), Fatal);
  EXPECT_THROW(throw Fatal(""), Error);
  EXPECT_THROW(throw Fatal(""), Exception);
  EXPECT_THROW(throw Fatal(""), std::exception);
}

TEST(ExceptionCatchTest, AnInternalErrorIsEveryBaseOfIt) {
  EXPECT_THROW(throw InternalError(""), InternalError);
  EXPECT_THROW(throw InternalError(""), Error);
  EXPECT_THROW(throw InternalError(""), Exception);
  EXPECT_THROW(throw InternalError(""), std::exception);
}

TEST(ExceptionCatchTest, FatalAndInternalErrorAreNotEachOther) {
  EXPECT_FALSE((std::is_base_of_v<Fatal, InternalError>));
  EXPECT_FALSE((std::is_base_of_v<InternalError, Fatal>));
}

TEST(ExceptionCatchTest, ALocatedObjectIsThrownAsWhatItIs) {
  Fatal fatal("the message");
  fatal.locate("file", "function", 1);
  EXPECT_THROW(throw fatal, Fatal);
}

TEST(ExceptionCatchTest, ABaseSeesTheMessageAndThePlace) {
  try {
    throw makeLocatedFatal();
  } catch (const Error& error) {
    EXPECT_STREQ(error.what(), "the message");
    EXPECT_EQ(error.getLine(), 12U);
  }
}

// --- Copies --------------------------------------------------------------------------------------

TEST(ExceptionCopyTest, NeverThrows) {
  EXPECT_TRUE(std::is_nothrow_copy_constructible_v<Exception>);
  EXPECT_TRUE(std::is_nothrow_copy_constructible_v<Error>);
  EXPECT_TRUE(std::is_nothrow_copy_constructible_v<Fatal>);
  EXPECT_TRUE(std::is_nothrow_copy_constructible_v<InternalError>);
}

TEST(ExceptionCopyTest, AssigningNeverThrows) {
  EXPECT_TRUE(std::is_nothrow_copy_assignable_v<Exception>);
  EXPECT_TRUE(std::is_nothrow_copy_assignable_v<Error>);
  EXPECT_TRUE(std::is_nothrow_copy_assignable_v<Fatal>);
  EXPECT_TRUE(std::is_nothrow_copy_assignable_v<InternalError>);
}

TEST(ExceptionCopyTest, SharesTheMessage) {
  const Exception exception(longMessage);
  const Exception copy(exception);
  EXPECT_EQ(copy.what(), exception.what());
}

TEST(ExceptionCopyTest, HasTheMessageAndThePlace) {
  const Fatal fatal = makeLocatedFatal();
  const Fatal copy(fatal);
  EXPECT_EQ(copy.getMessage(), "the message");
  EXPECT_EQ(copy.getFile(), "src/lib/File");
  EXPECT_EQ(copy.getFunction(), "function");
  EXPECT_EQ(copy.getLine(), 12U);
}

TEST(ExceptionCopyTest, AssigningTakesTheMessageAndThePlace) {
  Fatal assigned("another");
  assigned = makeLocatedFatal();
  EXPECT_EQ(assigned.getMessage(), "the message");
  EXPECT_EQ(assigned.getFile(), "src/lib/File");
}

TEST(ExceptionCopyTest, OutlivesTheOriginal) {
  auto original = std::make_unique<Exception>(longMessage);
  const Exception copy(*original);
  original.reset();
  EXPECT_EQ(copy.getMessage(), longMessage);
}

TEST(ExceptionCopyTest, AMovedFromExceptionKeepsItsMessageAndPlace) {
  Fatal fatal = makeLocatedFatal();
  const Fatal moved(std::move(fatal));
  EXPECT_EQ(fatal.getMessage(), "the message");
  EXPECT_EQ(fatal.getLine(), 12U);
  EXPECT_EQ(moved.getMessage(), "the message");
}
