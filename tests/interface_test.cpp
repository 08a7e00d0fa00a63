// What clients are compiled against: moves that cannot fail, and the layout of what they derive
// from or hold by value.
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_target.h>
#include <ondrel/adsb_target_report.h>
#include <ondrel/adsb_tracker.h>
#include <ondrel/df_messages.h>
#include <ondrel/mode_s_decoder.h>

#include "support/bytes.h"
#include "support/messages.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace tolvarin::ondrel {
namespace {

template <class Class>
constexpr bool movesWithoutFailure =
    std::is_nothrow_move_constructible_v<Class>&& std::is_nothrow_move_assignable_v<Class>;

static_assert(movesWithoutFailure<ModeSDecoder> && std::is_copy_constructible_v<ModeSDecoder>);
static_assert(movesWithoutFailure<ADSBTracker> && std::is_copy_constructible_v<ADSBTracker>);
static_assert(movesWithoutFailure<ADSBTarget> && movesWithoutFailure<ADSBTargetReport>);
static_assert(movesWithoutFailure<ADSBMessageField> && movesWithoutFailure<ADSBIdentityMessage>);
static_assert(movesWithoutFailure<ModeSMessageFieldME>);

// If one of these fails, the binary interface has changed: count ONDREL_ABI_VERSION up. The tables
// of decoder and tracker are behind pointers, so that they can change without that.
#if defined(__x86_64__) && defined(__LP64__) && defined(__GLIBCXX__)
static_assert(sizeof(ModeSDecoder) == sizeof(void*));
static_assert(sizeof(ADSBTracker) == 2 * sizeof(void*) + 4 * sizeof(u32));
static_assert(sizeof(ModeSMessage) == 80 && sizeof(DFMessage) == 88);
static_assert(sizeof(ModeSMessageField) == 16 && sizeof(DF17Message) == 208);
static_assert(sizeof(ADSBMessage) == 112 && sizeof(ADSBIdentityMessage) == 152);
static_assert(sizeof(ADSBMessageField) == 40);
static_assert(sizeof(ADSBTarget) == 784 && sizeof(ADSBTargetReport) == 760);
#endif

TEST(ADSBTracker, WorksAsAnEmptyOneWhenItsTableHasMovedOn) {
    ADSBTracker tracker;
    const auto message = test::graded(test::surveillance(4, 0x4840D6), 1000);
    ASSERT_NE(tracker.procModeSMsg(message.get()), nullptr);
    const ADSBTracker moved = std::move(tracker);
    EXPECT_EQ(moved.allTargets().size(), 1U);

    ADSBTracker& empty = tracker;
    EXPECT_TRUE(empty.allTargets().empty() && empty.allTargetsSince(0).empty());
    EXPECT_TRUE(empty.killTargets(~u64{0}).empty());
    EXPECT_EQ(empty.procModeSMsg(test::graded(test::allCall(0x4840D6, 0), 1).get()), nullptr);
    EXPECT_TRUE(ADSBTracker(empty).allTargets().empty());
    empty.reset();
    const ADSBTargetReport report = moved.allTargets().front().report();
    ASSERT_NE(empty.procTargetReport(&report), nullptr);
    EXPECT_EQ(empty.allTargets().size(), 1U);
    EXPECT_EQ(moved.allTargets().size(), 1U);
}

} // namespace
} // namespace tolvarin::ondrel
