#include <tov/allocator/Allocator.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/TypeManager.h>
#include <tov/utils/debugger/All.h>

#include "utils/debugger/EventTestSupport.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <thread>

using namespace tov::utils;
using namespace tov::utils::debugger;
using tov::testing::ForeignFilter;
using tov::testing::RecordingListener;

namespace host {

// A request class of a host, known to the type manager only once the host registers it.
class WatchRequest : public AbstractEventRequest {
    TOV_STATIC_OBJECT

public:
    explicit WatchRequest(unsigned int handle) : AbstractEventRequest(handle) {}
    bool addFilter(AbstractEventFilter* filter) override
    {
        TOV_DELETE(filter);
        return false;
    }
    void update() override {}
    void accept(AbstractEventRequestVisitor& visitor) override { visitor.visit(*this); }
};

TOV_STATIC_OBJECT_DEFINE_DERIVED(WatchRequest, AbstractEventRequest, "host::WatchRequest",
                                 "9c3f2e1a-7b6d-4c58-a1e0-3f2b8d7c6e54")

} // namespace host

namespace {

class Registration : public EntityRegistrationRequestVisitor {
public:
    using EntityRegistrationRequestVisitor::EntityRegistrationRequestVisitor;
    using EntityRegistrationRequestVisitor::visit;
    void visit(EntityRegistrationRequest& request) override { request.notify(getEntity()); }
};

// Counts every pass through the request, so that a use after destruction shows under the sanitizers.
using Breakpoint = tov::utils::debugger::LocationBreakpointVisitor;

const std::chrono::seconds patience(10);
const Uri simulation = Uri::create("tov:simulation");

class RequestRegistryTest : public tov::testing::StartedLibrary {
protected:
    template <typename Request>
    unsigned int subscribe(RequestRegistry& registry, AbstractEventListener& listener,
                           AbstractEventFilter* filter = nullptr)
    {
        AbstractEventListener* listeners[] = {&listener};
        return registry.subscribe<Request>(listeners, 1, &filter, filter == nullptr ? 0 : 1);
    }

    RecordingListener listener;
};

} // namespace

TEST_F(RequestRegistryTest, HandlesStartAtOneAndAreNeverReused)
{
    RequestRegistry registry;
    registry.unsubscribeAll(); // nothing there: nothing happens
    EXPECT_EQ(1u, subscribe<EntityRegistrationRequest>(registry, listener));
    EXPECT_EQ(2u, subscribe<TerminationRequest>(registry, listener));
    EXPECT_TRUE(registry.unsubscribe(1));
    EXPECT_FALSE(registry.unsubscribe(1));
    EXPECT_FALSE(registry.unsubscribe(0));
    EXPECT_FALSE(registry.unsubscribe(9));
    EXPECT_EQ(3u, subscribe<EntityRegistrationRequest>(registry, listener));
    registry.unsubscribeAll();
    EXPECT_FALSE(registry.unsubscribe(2));
    EXPECT_EQ(4u, registry.subscribe<TargetDisconnectRequest>(nullptr, 0, nullptr, 0));
}

TEST_F(RequestRegistryTest, AClassThatTheTypeManagerDoesNotKnowAsARequestGetsNoHandle)
{
    RequestRegistry registry;
    EXPECT_EQ(0u, subscribe<host::WatchRequest>(registry, listener));
    TypeManager& types = Facilities::instance().getTypeManager();
    ASSERT_TRUE(types.registerType<host::WatchRequest>(nullptr));
    // The refusal built nothing and took no handle.
    EXPECT_EQ(1u, subscribe<host::WatchRequest>(registry, listener));
    types.unregisterType(host::WatchRequest::getClassTypeId());
    EXPECT_EQ(0u, subscribe<host::WatchRequest>(registry, listener));
    EXPECT_EQ(2u, subscribe<BreakpointRequest>(registry, listener));
}

TEST_F(RequestRegistryTest, AnInitializationSubscriberIsToldBeforeSubscribeReturns)
{
    RequestRegistry registry;
    RecordingListener second;
    AbstractEventListener* listeners[] = {&listener, &second};
    EXPECT_EQ(1u, registry.subscribe<InitializationRequest>(listeners, 2, nullptr, 0));
    EXPECT_EQ(std::vector<std::string>{"initialization 1"}, listener.events());
    EXPECT_EQ(std::vector<std::string>{"initialization 1"}, second.events());

    // Told under the registry's lock, a subscriber may still leave at once.
    listener.onEvent = [&registry](unsigned int handle) { registry.unsubscribe(handle); };
    EXPECT_EQ(2u, subscribe<InitializationRequest>(registry, listener));
    EXPECT_FALSE(registry.unsubscribe(2));
}

TEST_F(RequestRegistryTest, ANullListenerOrFilterBreaksTheContract)
{
    RequestRegistry registry;
    AbstractEventListener* listeners[] = {&listener, nullptr};
    EXPECT_ASSERTION(static_cast<void>(registry.subscribe<TerminationRequest>(listeners, 2, nullptr, 0)),
                     "1th given listener is NULL.");
    AbstractEventFilter* filters[] = {nullptr};
    EXPECT_ASSERTION(static_cast<void>(registry.subscribe<BreakpointRequest>(listeners, 1, filters, 1)),
                     "0th given filter is NULL.");
}

TEST_F(RequestRegistryTest, TheEndOfTheRegistryTellsTerminationSubscribersOnceAndReleasesEverything)
{
    const tov::allocator::Allocator& memory = tov::allocator::Allocator::instance();
    const unsigned long long liveBlocks = memory.getLiveBlocks();
    int destroyed = 0;
    {
        RequestRegistry registry;
        subscribe<TerminationRequest>(registry, listener);
        subscribe<EntityRegistrationRequest>(registry, listener);
        subscribe<BreakpointRequest>(registry, listener, TOV_NEW ForeignFilter(&destroyed));
        subscribe<TerminationRequest>(registry, listener);
        subscribe<TargetSuspendRequest>(registry, listener, TOV_NEW ForeignFilter(&destroyed)); // refused
        EXPECT_EQ(1, destroyed);
        EXPECT_TRUE(listener.events().empty());
    }
    EXPECT_EQ((std::vector<std::string>{"termination 1", "termination 4"}), listener.events());
    EXPECT_EQ(2, destroyed);
    EXPECT_EQ(liveBlocks, memory.getLiveBlocks());
}

TEST_F(RequestRegistryTest, ALocationBreakpointPassesOverRefusingRequestsWithTheSameOutcomeAsVisitingEach)
{
    const Uri here = Uri::create("tov:agents/forager.behavior#seek");
    const Uri there = Uri::create("tov:agents/forager.behavior#flee");
    const unsigned int three[] = {3};
    const auto filtersOfRow = [&](int row) -> std::vector<AbstractEventFilter*> {
        switch (row) {
        case 0:
            return {TOV_NEW LocationFilter(here), TOV_NEW HitCountFilter(2)};
        case 1:
            return {TOV_NEW LocationFilter(there)};
        case 2:
            return {TOV_NEW LocationFilter(here), TOV_NEW LocationFilter(there)}; // both must pass: never
        case 3:
            return {TOV_NEW EntitiesFilter(three, 1), TOV_NEW LocationFilter(here)};
        default:
            return {};
        }
    };
    RequestRegistry registry;
    RecordingListener direct;
    std::vector<std::unique_ptr<BreakpointRequest>> alone; // the same requests, visited one by one
    for (int row = 0; row < 5; ++row) {
        std::vector<AbstractEventFilter*> filters = filtersOfRow(row);
        AbstractEventListener* listeners[] = {&listener};
        const unsigned int handle = registry.subscribe<BreakpointRequest>(listeners, 1, filters.data(),
                                                                          static_cast<unsigned int>(filters.size()));
        alone.push_back(std::make_unique<BreakpointRequest>(handle));
        alone.back()->registerListener(direct);
        for (AbstractEventFilter* filter : filtersOfRow(row)) {
            ASSERT_TRUE(alone.back()->addFilter(filter));
        }
    }
    for (unsigned int entity : {3u, 4u, 3u}) {
        for (const Uri* at : {&here, &there}) {
            Breakpoint throughRegistry(entity, *at);
            registry.accept(throughRegistry);
            Breakpoint oneByOne(entity, *at);
            for (const auto& request : alone) {
                request->accept(oneByOne);
            }
            EXPECT_EQ(oneByOne.isHit(), throughRegistry.isHit());
        }
    }
    EXPECT_EQ(direct.events(), listener.events());
    EXPECT_EQ(13u, listener.events().size());

    // A subclass may visit otherwise: it is offered every request.
    struct Counting : Breakpoint {
        using Breakpoint::Breakpoint;
        using Breakpoint::visit;
        void visit(BreakpointRequest&) override { ++offered; }
        int offered = 0;
    } counting(4, there);
    registry.accept(counting);
    EXPECT_EQ(5, counting.offered);
}

// A walk steps back after a change in front of it and passes over what it gave out; the handle equal to
// the index of a removal or an addition is forgotten, so that a later step back offers it again.
TEST_F(RequestRegistryTest, ARemovalForgetsTheHandleEqualToItsIndexSoALaterStepBackOffersItAgain)
{
    RequestRegistry registry;
    for (int i = 0; i < 5; ++i) {
        subscribe<EntityRegistrationRequest>(registry, listener);
    }
    RequestIterator* walk = registry.createIterator();
    EXPECT_EQ(1u, walk->next()->getHandle());
    EXPECT_EQ(2u, walk->next()->getHandle());
    ASSERT_TRUE(registry.unsubscribe(1)); // at index 0: the walk looks again from there
    for (unsigned int handle = 3; handle <= 5; ++handle) {
        EXPECT_EQ(handle, walk->next()->getHandle());
    }
    EXPECT_EQ(nullptr, walk->next());
    // An end is not final.
    subscribe<EntityRegistrationRequest>(registry, listener);
    EXPECT_EQ(6u, walk->next()->getHandle());
    ASSERT_TRUE(registry.unsubscribe(5)); // index 3: handle 3 is forgotten
    EXPECT_EQ(nullptr, walk->next());
    ASSERT_TRUE(registry.unsubscribe(2)); // index 0: the walk steps back to the front
    EXPECT_EQ(3u, walk->next()->getHandle());
    EXPECT_EQ(4u, walk->next()->getHandle()); // forgotten by the addition at index 4
    EXPECT_EQ(nullptr, walk->next());
    registry.destroyIterator(walk);
}

TEST_F(RequestRegistryTest, ListenersMaySubscribeUnsubscribeAndFireAgainDuringAFiring)
{
    RecordingListener other; // outlives the registry, which tells it of the termination
    RequestRegistry registry;
    subscribe<EntityRegistrationRequest>(registry, listener); // 1
    subscribe<EntityRegistrationRequest>(registry, other);    // 2
    subscribe<TerminationRequest>(registry, other);           // 3
    subscribe<EntityRegistrationRequest>(registry, other);    // 4
    int firings = 0;
    listener.onEvent = [&](unsigned int) {
        if (++firings > 1) {
            return;
        }
        // A new request of the same class is offered in this firing; a removed one is not.
        EXPECT_EQ(5u, subscribe<EntityRegistrationRequest>(registry, other));
        EXPECT_TRUE(registry.unsubscribe(2));
        Registration inner(8);
        registry.accept(inner);
    };
    Registration registration(7);
    registry.accept(registration);
    EXPECT_EQ((std::vector<std::string>{"registration 1 7", "registration 1 8"}), listener.events());
    EXPECT_EQ(
        (std::vector<std::string>{"registration 4 8", "registration 5 8", "registration 4 7", "registration 5 7"}),
        other.events());
}

TEST_F(RequestRegistryTest, AListenerThatUnsubscribesItsOwnRequestLeavesItAliveUntilTheFiringMovesOn)
{
    const unsigned long long liveBlocks = tov::allocator::Allocator::instance().getLiveBlocks();
    int destroyed = 0;
    RecordingListener second;
    {
        RequestRegistry registry;
        AbstractEventListener* listeners[] = {&listener, &second};
        AbstractEventFilter* filters[] = {TOV_NEW ForeignFilter(&destroyed)};
        const unsigned int handle = registry.subscribe<BreakpointRequest>(listeners, 2, filters, 1);
        subscribe<BreakpointRequest>(registry, second);
        listener.onEvent = [&](unsigned int told) {
            EXPECT_TRUE(registry.unsubscribe(told));
            EXPECT_EQ(0, destroyed);
        };
        Breakpoint breakpoint(3, simulation);
        registry.accept(breakpoint); // goes on to count the pass on the unsubscribed request
        EXPECT_EQ(1, destroyed);
        EXPECT_EQ((std::vector<std::string>{"breakpoint 1 3 tov:simulation", "breakpoint 2 3 tov:simulation"}),
                  second.events());
        EXPECT_FALSE(registry.unsubscribe(handle));

        // The same when one listener ends every subscription.
        subscribe<BreakpointRequest>(registry, listener, TOV_NEW ForeignFilter(&destroyed));
        subscribe<BreakpointRequest>(registry, second, TOV_NEW ForeignFilter(&destroyed));
        listener.onEvent = [&](unsigned int) { registry.unsubscribeAll(); };
        registry.accept(breakpoint);
        EXPECT_EQ(3, destroyed);
    }
    EXPECT_EQ(liveBlocks, tov::allocator::Allocator::instance().getLiveBlocks());
}

TEST_F(RequestRegistryTest, AnotherThreadChangesTheSubscriptionsWhileAListenerRuns)
{
    RequestRegistry registry;
    int destroyed = 0;
    subscribe<BreakpointRequest>(registry, listener);                                    // 1
    subscribe<BreakpointRequest>(registry, listener, TOV_NEW ForeignFilter(&destroyed)); // 2
    subscribe<BreakpointRequest>(registry, listener);                                    // 3
    subscribe<BreakpointRequest>(registry, listener);                                    // 4

    std::mutex mutex;
    std::condition_variable changed;
    bool paused = false;
    bool done = false;
    listener.onEvent = [&](unsigned int handle) {
        if (handle != 2) {
            return;
        }
        std::unique_lock<std::mutex> lock(mutex);
        paused = true;
        changed.notify_all();
        ASSERT_TRUE(changed.wait_for(lock, patience, [&] { return done; }));
        // The request in hand was unsubscribed but is still there.
        EXPECT_EQ(0, destroyed);
    };
    std::thread other([&] {
        std::unique_lock<std::mutex> lock(mutex);
        if (!changed.wait_for(lock, patience, [&] { return paused; })) {
            return;
        }
        EXPECT_TRUE(registry.unsubscribe(2)); // the one being visited
        EXPECT_TRUE(registry.unsubscribe(3)); // not visited yet
        EXPECT_EQ(5u, subscribe<BreakpointRequest>(registry, listener));
        done = true;
        changed.notify_all();
    });
    Breakpoint breakpoint(6, simulation);
    registry.accept(breakpoint);
    other.join();
    EXPECT_EQ(1, destroyed);
    EXPECT_EQ((std::vector<std::string>{"breakpoint 1 6 tov:simulation", "breakpoint 2 6 tov:simulation",
                                        "breakpoint 4 6 tov:simulation", "breakpoint 5 6 tov:simulation"}),
              listener.events());
}

TEST_F(RequestRegistryTest, FiringsAndSubscriptionsOnSeveralThreadsReachEveryStandingRequest)
{
    RecordingListener quiet, passing;
    RequestRegistry registry;
    for (int i = 0; i < 3; ++i) {
        subscribe<BreakpointRequest>(registry, quiet, TOV_NEW HitCountFilter(1)); // 1 to 3 stay
    }
    std::atomic<bool> stop(false);
    std::atomic<int> missed(0);
    std::atomic<int> firings(0);
    auto fire = [&](unsigned int entity) {
        while (!stop.load()) {
            struct Seen : Breakpoint {
                using Breakpoint::Breakpoint;
                using Breakpoint::visit;
                void visit(BreakpointRequest& request) override
                {
                    ++offered[request.getHandle()];
                    Breakpoint::visit(request);
                }
                std::map<unsigned int, int> offered;
            } seen(entity, simulation);
            registry.accept(seen);
            for (unsigned int standing = 1; standing <= 3; ++standing) {
                missed += seen.offered[standing] == 0 ? 1 : 0;
            }
            ++firings;
        }
    };
    std::thread first(fire, 1u), second(fire, 2u);
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(300);
    unsigned int subscribed = 0;
    while (std::chrono::steady_clock::now() < end) {
        const unsigned int handle = subscribe<BreakpointRequest>(registry, passing, TOV_NEW HitCountFilter(2));
        subscribed += handle != 0 ? 1 : 0;
        std::this_thread::yield();
        EXPECT_TRUE(registry.unsubscribe(handle));
    }
    stop = true;
    first.join();
    second.join();
    EXPECT_GT(subscribed, 0u);
    EXPECT_GT(firings.load(), 0);
    EXPECT_EQ(0, missed.load());
    // Each standing request was told on every firing.
    EXPECT_EQ(static_cast<size_t>(firings.load()) * 3, quiet.events().size());
}
