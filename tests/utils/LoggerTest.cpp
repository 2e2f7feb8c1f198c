#include <tov/utils/AssertingLogger.h>
#include <tov/utils/BufferLogger.h>
#include <tov/utils/ErrorType.h>
#include <tov/utils/Logging.h>
#include <tov/utils/OstreamLogger.h>

#include "support/AssertionGuard.h"

#include <sstream>
#include <thread>
#include <vector>

using namespace tov::utils;

TEST(OstreamLogger, WritesEachLevelInItsLineFormatAndNullStreamsSwitchLevelsOff)
{
    std::ostringstream errors, warnings, infos, traces;
    OstreamLogger logger(&errors, &warnings, &infos, &traces);
    logger.logTrace("a.cpp", 1, "t");
    logger.logInfo("b.cpp", 2, "i");
    logger.logWarning("c.cpp", 3, "w");
    logger.logError(error::fileFormatCorrupted, "d.cpp", 4, "e");
    logger.logError(ErrorType(), "e.cpp", 5, "none");
    EXPECT_EQ("a.cpp(1): [trace] t\n", traces.str());
    EXPECT_EQ("b.cpp(2): [info] i\n", infos.str());
    EXPECT_EQ("c.cpp(3): [warning] w\n", warnings.str());
    EXPECT_EQ("d.cpp(4): [corrupted file format] e\ne.cpp(5): [no error] none\n", errors.str());
    // Null streams switch levels off, but errors still count.
    OstreamLogger silent(nullptr, nullptr, nullptr, nullptr);
    EXPECT_FALSE(silent.isLoggingWarning() || silent.isLoggingInfo() || silent.isLoggingTrace());
    silent.logError(error::ioProblem, "f", 1, "lost");
    EXPECT_TRUE(silent.hasErrors());
    silent.resetErrors();
    EXPECT_FALSE(silent.hasErrors());
}

TEST(OstreamLogger, LinesOfThreadsNeverInterleave)
{
    std::ostringstream shared;
    OstreamLogger logger(&shared, &shared, &shared, &shared);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&logger, t] {
            for (int i = 0; i < 200; ++i) {
                TOV_LOG_INFO(&logger, "thread " << t << " line " << i << " with some more text to widen the window");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::istringstream lines(shared.str());
    std::string line;
    int count = 0;
    while (std::getline(lines, line)) {
        ++count;
        EXPECT_NE(std::string::npos, line.find("[info] thread ")) << line;
        EXPECT_NE(std::string::npos, line.find("to widen the window")) << line;
    }
    EXPECT_EQ(800, count);
}

TEST(BufferLogger, FlushAppliesTheTargetsFiltersAndEmptiesTheSourceResetErrorsKeepsMessagesAndClearDropsBoth)
{
    BufferLogger source(true, true, true);
    source.logTrace("t.cpp", 1, "trace");
    source.logInfo("i.cpp", 2, "info");
    source.logWarning("w.cpp", 3, "warning");
    source.logError(error::invalidData, "e.cpp", 4, "error");
    BufferLogger target(true, false, false);
    source.flush(target);

    EXPECT_TRUE(source.getMessages().empty());
    EXPECT_FALSE(source.hasErrors());
    EXPECT_TRUE(target.hasErrors());
    ASSERT_EQ(2u, target.getMessages().size());
    const BufferLogger::Message& warning = target.getMessages()[0];
    EXPECT_EQ('w', warning.type);
    EXPECT_EQ("w.cpp", warning.file);
    EXPECT_EQ(3u, warning.line);
    EXPECT_EQ("warning", warning.message);
    EXPECT_EQ(ErrorType(), warning.errorType);
    const BufferLogger::Message& failure = target.getMessages()[1];
    EXPECT_EQ('e', failure.type);
    EXPECT_EQ(error::invalidData, failure.errorType);
    EXPECT_STREQ("invalid data", failure.errorType.getCaption());

    // resetErrors keeps the messages, clear drops both.
    BufferLogger logger(false, false, false);
    logger.logInfo("f", 1, "filtered out");
    logger.logError(error::unknownError, "f", 2, "kept");
    ASSERT_EQ(1u, logger.getMessages().size());
    logger.resetErrors();
    EXPECT_FALSE(logger.hasErrors());
    EXPECT_EQ(1u, logger.getMessages().size());
    logger.logError(error::unknownError, "f", 3, "again");
    logger.clear();
    EXPECT_FALSE(logger.hasErrors());
    EXPECT_TRUE(logger.getMessages().empty());
}

TEST(LogMacros, ComposeTheMessageOnlyWhenItGoesOut)
{
    int evaluated = 0;
    auto count = [&evaluated] { return ++evaluated; };
    BufferLogger quiet(false, false, false);
    TOV_LOG_INFO(&quiet, "value " << count());
    TOV_LOG_TRACE(static_cast<AbstractLogger*>(nullptr), count());
    TOV_LOG_ERROR(static_cast<AbstractLogger*>(nullptr), error::invalidData, count());
    EXPECT_EQ(0, evaluated);
    TOV_LOG_ERROR(&quiet, error::invalidData, "value " << count());
    EXPECT_EQ(1, evaluated);
    EXPECT_EQ("value 1", quiet.getMessages().at(0).message);
}

TEST(ErrorType, ComparesByIdOnly)
{
    const Uuid id = Uuid::create("06cb0f65-5199-4c7b-8146-ae6a1d3f97c1");
    EXPECT_EQ(ErrorType(id, "a"), ErrorType(id, "b"));
    EXPECT_EQ(error::invalidArgument, ErrorType(id, "other caption"));
    EXPECT_NE(error::invalidArgument, error::invalidData);
    EXPECT_STREQ("no error", ErrorType().getCaption());
    EXPECT_FALSE(ErrorType().getId().isValid());
    EXPECT_STREQ("thread problem", error::threadError.getCaption());
}

class Assertions : public tov::testing::AssertionTest {};

TEST_F(Assertions, ThrowOnAssertionFailedAndAnAssertingLoggerCarryTheMessage)
{
    EXPECT_ASSERTION(TOV_ASSERT(1 + 1 == 3, "sum is " << 2), "sum is 2");
    EXPECT_NO_THROW(TOV_ASSERT(true, "never composed"));
    // An AssertingLogger turns an error into an assertion.
    AssertingLogger strict;
    EXPECT_FALSE(strict.isLoggingWarning() || strict.isLoggingInfo() || strict.isLoggingTrace());
    EXPECT_ASSERTION(strict.logError(error::invalidData, "f", 1, "broken"), "broken");
}

TEST(AssertionHooks, DefaultExitsAndPausingNeedsADebugger)
{
    EXPECT_EQ(&exitOnAssertionFailed, getAssertionFailedFunction());
    EXPECT_EXIT(assertionFailed("x.cpp", 9, "fatal"), ::testing::ExitedWithCode(1),
                "x\\.cpp\\(9\\): \\[assertion failed\\] fatal");
    allowPausingExecutionOnDetectedError(true);
    EXPECT_EQ(isDebuggerAttached(), shouldExecutionBePaused<1>());
    allowPausingExecutionOnDetectedError(false);
    EXPECT_FALSE(shouldExecutionBePaused<1>());
    allowPausingExecutionOnDetectedError(true);
}
