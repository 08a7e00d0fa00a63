// What clients are compiled against: moves that cannot fail, and the layout of the classes that
// they derive from.
#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_surface_position_message.h>
#include <ondrel/adsb_tracker.h>
#include <ondrel/df_messages.h>
#include <ondrel/mode_s_decoder.h>

#include "support/allocations.h"
#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/messages.h"

#include <gtest/gtest.h>

#include <memory>
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
static_assert(std::is_nothrow_move_constructible_v<DF17Message>);

// If one of these fails, the binary interface has changed; CONTRIBUTING.md says which number of the
// version moves. The tables of decoder and tracker are behind pointers, so they can change.
#if defined(__x86_64__) && defined(__LP64__) && defined(__GLIBCXX__)
static_assert(sizeof(ModeSDecoder) == sizeof(void*));
static_assert(sizeof(ADSBTracker) == 2 * sizeof(void*) + 4 * sizeof(u32));
static_assert(sizeof(ModeSMessage) == 80 && sizeof(DFMessage) == 88);
static_assert(sizeof(DF0Message) == 176 && sizeof(DF11Message) == 160);
static_assert(sizeof(DF17Message) == 208 && sizeof(DF20Message) == 224);
static_assert(sizeof(ModeSMessageField) == 16 && sizeof(ModeSMessageFieldME) == 48);
static_assert(sizeof(ADSBMessage) == 200 && sizeof(ADSBMessageField) == 40);
static_assert(sizeof(ADSBIdentityMessage) == 240 && sizeof(ADSBSurfacePositionMessage) == 248);
static_assert(sizeof(ADSBAirbornePositionMessage) == 232);
static_assert(sizeof(ADSBAirborneVelocityMessage) == 232);
#endif

TEST(Interface, MovesOfDecoderAndTrackerAllocateNothingAndWriteNoLine) {
    test::CapturedLog log;
    ModeSDecoder decoder;
    ADSBTracker tracker;
    for (u32 address = 1; address < 100; ++address) {
        const std::unique_ptr<ModeSMessage> message(
            decoder.decode(ModeSMessage::Downlink, test::squitter(address), 1000));
        ASSERT_NE(tracker.procModeSMsg(message.get()), nullptr);
    }
    ModeSDecoder otherDecoder;
    ADSBTracker otherTracker;
    log.take();
    const std::size_t before = test::allocations();
    ModeSDecoder movedDecoder(std::move(decoder));
    otherDecoder = std::move(movedDecoder);
    ADSBTracker movedTracker(std::move(tracker));
    otherTracker = std::move(movedTracker);
    EXPECT_EQ(test::allocations() - before, 0U);
    EXPECT_EQ(log.take(), test::Lines{});
    EXPECT_EQ(otherTracker.allTargets().size(), 99U);
}

TEST(Interface, ATrackerThatWasMovedFromWorksAsAnEmptyOne) {
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
