#pragma once

// Waiting in tests for what other threads, other processes and the event loop bring about.

#include <gtest/gtest.h>

#include <QtCore/qtestsupport_core.h>

namespace test {

/// More than the slowest machine takes: a wait that is not over by then is a fault.
constexpr int kPatienceMs = 60000;

/// Turns the event loop until @p condition holds; whether it does.
template <class Condition>
[[nodiscard]] bool soon(const Condition &condition)
{
    return QTest::qWaitFor(condition, kPatienceMs);
}

} // namespace test

/// An expression that is asked again and again until it is true.
#define EXPECT_SOON(...) EXPECT_TRUE(test::soon([&] { return __VA_ARGS__; }))
#define ASSERT_SOON(...) ASSERT_TRUE(test::soon([&] { return __VA_ARGS__; }))
