#pragma once
// Log macros: the message is a stream expression, composed only when it is going out (a null logger,
// or a level that is off, costs one test).
//   TOV_LOG_ERROR(logger, tov::utils::error::invalidData, "bad value " << value);
//   TOV_LOG_INFO(logger, "Loaded " << count << " items.");

#include <tov/utils/AbstractLogger.h>
#include <tov/utils/ErrorType.h>
#include <tov/utils/String.h>

#define TOV_LOG_ERROR(logger, errorType, streamExpression)                                                             \
    do {                                                                                                               \
        ::tov::utils::AbstractLogger* TOV_LOG_logger = (logger);                                                       \
        if (TOV_LOG_logger != nullptr) {                                                                               \
            ::tov::utils::OStringStream TOV_LOG_stream;                                                                \
            TOV_LOG_stream << streamExpression; /* NOLINT(bugprone-macro-parentheses): a chain of << */                \
            const ::tov::utils::String TOV_LOG_message = TOV_LOG_stream.str();                                         \
            TOV_LOG_logger->logError((errorType), __FILE__, __LINE__, TOV_LOG_message.c_str());                        \
        }                                                                                                              \
    } while (false)

#define TOV_LOG_AT_LEVEL(logger, isLevelOn, logAtLevel, streamExpression)                                              \
    do {                                                                                                               \
        ::tov::utils::AbstractLogger* TOV_LOG_logger = (logger);                                                       \
        if (TOV_LOG_logger != nullptr && TOV_LOG_logger->isLevelOn()) {                                                \
            ::tov::utils::OStringStream TOV_LOG_stream;                                                                \
            TOV_LOG_stream << streamExpression; /* NOLINT(bugprone-macro-parentheses): a chain of << */                \
            const ::tov::utils::String TOV_LOG_message = TOV_LOG_stream.str();                                         \
            TOV_LOG_logger->logAtLevel(__FILE__, __LINE__, TOV_LOG_message.c_str());                                   \
        }                                                                                                              \
    } while (false)

#define TOV_LOG_WARNING(logger, streamExpression)                                                                      \
    TOV_LOG_AT_LEVEL(logger, isLoggingWarning, logWarning, streamExpression)
#define TOV_LOG_INFO(logger, streamExpression) TOV_LOG_AT_LEVEL(logger, isLoggingInfo, logInfo, streamExpression)
#define TOV_LOG_TRACE(logger, streamExpression) TOV_LOG_AT_LEVEL(logger, isLoggingTrace, logTrace, streamExpression)
