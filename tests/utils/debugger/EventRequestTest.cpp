#include <tov/allocator/Allocator.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/TypeManager.h>
#include <tov/utils/debugger/All.h>
#include <tov/utils/debugger/impl/MainContext.h>
#include <tov/utils/debugger/impl/MainContextFactory.h>

#include "utils/debugger/EventTestSupport.h"

#include <functional>
#include <memory>

using namespace tov::utils;
using namespace tov::utils::debugger;
using tov::testing::ForeignFilter;
using tov::testing::RecordingListener;

namespace {

std::string idText(const Uuid& id)
{
    char text[37];
    id.computeString(text);
    return text;
}

// Each visitor of the matrix test writes its own letter when its typed visit runs.
template <typename Visitor, typename Request>
class Marking : public Visitor {
public:
    template <typename... Arguments>
    Marking(std::string& marks, char mark, Arguments... arguments) : Visitor(arguments...), marks(marks), mark(mark)
    {
    }
    using Visitor::visit;
    void visit(Request&) override { marks += mark; }

private:
    std::string& marks;
    char mark;
};

// A class's id, name, id as text and registered base.
struct ClassRow {
    const Uuid& id;
    const char* name;
    const char* idText;
    const Uuid* base;
};

template <typename Class>
ClassRow row(const char* idText, const Uuid* base)
{
    return {Class::getClassTypeId(), Class::getClassTypeName(), idText, base};
}

const Uri here = Uri::create("tov:agents/forager.behavior");
const Uri elsewhere = Uri::create("tov:agents/scout.behavior");

} // namespace

TEST(EventClasses, EachClassHasItsNameAndIdAndTheRegisteredBase)
{
    const Uuid* aFilter = &AbstractEventFilter::getClassTypeId();
    const Uuid* aRequest = &AbstractEventRequest::getClassTypeId();
    const ClassRow rows[] = {
        row<AbstractContext>("2de10931-583e-4114-9c9b-349ff9368296", nullptr),
        row<AbstractEventFilter>("70cc68f4-f0b4-41ec-8eb8-a174cb0fd0dc", nullptr),
        row<AbstractEventRequest>("0476292e-8d52-4235-bf07-db5be5ec9bf4", nullptr),
        row<EntitiesFilter>("7466a2e4-e4e5-4b18-9716-d8232f781e42", aFilter),
        row<HitCountFilter>("6bd03c2e-d96f-4318-a68e-a359970c6ba3", aFilter),
        row<LocationFilter>("060a160a-9175-42cf-8548-836663cb62bd", aFilter),
        row<BreakpointRequest>("33744771-c389-4914-96e8-cdca5c59cf82", aRequest),
        row<EntityRegistrationRequest>("7ff2390a-aa6f-4e1d-a28c-448238c5dcf6", aRequest),
        row<EntityUnregistrationRequest>("5dbc9b70-fb5f-4c90-b5ea-16532faf4ecc", aRequest),
        row<InitializationRequest>("99d9780e-eb2b-487c-937a-1840077c0816", aRequest),
        row<TargetDisconnectRequest>("dc773989-1044-44d6-8993-3351b64dfd35", aRequest),
        row<TargetSuspendRequest>("43672c42-c091-4bfb-a4fe-d3a38ea9b883", aRequest),
        row<TerminationRequest>("4f42d75e-1837-4822-9de2-610f70752899", aRequest),
    };
    ASSERT_TRUE(initialize(nullptr));
    const TypeManager& types = Facilities::instance().getTypeManager();
    for (const ClassRow& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.idText, idText(row.id));
        EXPECT_STREQ(row.name, types.getTypeName(row.id));
        EXPECT_EQ(row.base != nullptr, row.base != nullptr && types.isDerivedFrom(row.id, *row.base));
        // The abstract roots are not StaticObjects in the metadata, whatever C++ says.
        EXPECT_FALSE(types.isStaticObject(row.id));
    }
    const BreakpointRequest request(1);
    EXPECT_STREQ("tov::utils::debugger::BreakpointRequest", static_cast<const StaticObject&>(request).getTypeName());

    // One class gone is enough to end the run.
    Facilities::instance().getTypeManager().unregisterType(TerminationRequest::getClassTypeId());
    EXPECT_FALSE(isInitialized());
    // terminate acts only on a complete run.
    ASSERT_TRUE(Facilities::instance().getTypeManager().registerType<TerminationRequest>(nullptr));
    EXPECT_TRUE(isInitialized());
    terminate(nullptr);
}

TEST(HitCountFilter, PassesAreJudgedByModeAndCountFromTheFirstPassOn)
{
    struct Row {
        int count;
        int mode;
        const char* passesLetThrough; // passes 1 to 8
    };
    const Row rows[] = {
        {1, HitCountFilter::atLeast, "11111111"},
        {3, HitCountFilter::atLeast, "00111111"},
        {3, HitCountFilter::exactly, "00100000"},
        {2, HitCountFilter::everyMultiple, "01010101"},
        {3, HitCountFilter::everyMultiple, "00100100"},
        {-2, HitCountFilter::everyMultiple, "01010101"},
        {0, HitCountFilter::everyMultiple, "00000000"}, // no division by zero
        {1, 7, "00000000"},                             // unknown mode
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.count << " mode " << row.mode);
        HitCountFilter filter(row.count, static_cast<HitCountFilter::Mode>(row.mode));
        std::string passes;
        for (int pass = 1; pass <= 8; ++pass) {
            EXPECT_EQ(pass, filter.getHits());
            passes += filter() ? '1' : '0';
            filter.update();
        }
        EXPECT_EQ(row.passesLetThrough, passes);
    }
    const HitCountFilter byDefault;
    EXPECT_EQ(1, byDefault.getCount());
    EXPECT_EQ(HitCountFilter::atLeast, byDefault.getMode());
}

TEST(FilterVisitors, EntitiesCombineByOrLocationsAndHitCountsByAndAndAbsentKindsRestrictNothing)
{
    const unsigned int some[] = {4, 9};
    const unsigned int other[] = {12};
    const EntitiesFilter entities(some, 2), moreEntities(other, 1), noEntities(nullptr, 0);
    const LocationFilter atHere(here), atElsewhere(elsewhere);
    HitCountFilter laterPass(2), firstPass(1);
    const ForeignFilter foreign;

    EntitiesFilterVisitor entity12(12);
    EXPECT_TRUE(entity12.isValid());
    EXPECT_FALSE(entity12.visit(atHere));
    EXPECT_FALSE(entity12.visit(foreign));
    EXPECT_TRUE(entity12.isValid());
    EXPECT_TRUE(entity12.visit(entities));
    EXPECT_FALSE(entity12.isValid());
    moreEntities.accept(entity12);
    EXPECT_TRUE(entity12.isValid());
    noEntities.accept(entity12);
    EXPECT_TRUE(entity12.isValid());

    EntitiesFilterVisitor entity4(4);
    noEntities.accept(entity4);
    EXPECT_FALSE(entity4.isValid());

    LocationFilterVisitor location(here);
    EXPECT_FALSE(location.visit(entities));
    atHere.accept(location);
    EXPECT_TRUE(location.isValid());
    atElsewhere.accept(location);
    EXPECT_FALSE(location.isValid());
    atHere.accept(location);
    EXPECT_FALSE(location.isValid());

    HitCountFilterVisitor hitCount;
    EXPECT_FALSE(hitCount.visit(atHere));
    firstPass.accept(hitCount);
    EXPECT_TRUE(hitCount.isValid());
    laterPass.accept(hitCount);
    EXPECT_FALSE(hitCount.isValid());
}

TEST(BreakpointRequest, CanHitWeighsEntitiesAndLocationsAndIsHitAlsoTheHitCount)
{
    const unsigned int four[] = {4};
    const unsigned int nine[] = {9};
    using Make = std::function<AbstractEventFilter*()>;
    const Make entity4 = [&] { return TOV_NEW EntitiesFilter(four, 1); };
    const Make entity9 = [&] { return TOV_NEW EntitiesFilter(nine, 1); };
    const Make noEntity = [] { return TOV_NEW EntitiesFilter(nullptr, 0); };
    const Make atHere = [] { return TOV_NEW LocationFilter(here); };
    const Make atElsewhere = [] { return TOV_NEW LocationFilter(elsewhere); };
    const Make third = [] { return TOV_NEW HitCountFilter(3); };
    const Make foreign = [] { return TOV_NEW ForeignFilter(); };
    struct Row {
        const char* what;
        std::vector<Make> filters;
        unsigned int entity;
        const Uri& location;
        bool canHit;
        bool isHit;
    };
    const Row rows[] = {
        {"no filter hits everywhere", {}, 77, elsewhere, true, true},
        {"entity listed", {entity4}, 4, here, true, true},
        {"entity not listed", {entity4}, 9, here, false, false},
        {"either of two entity lists", {entity4, entity9}, 9, here, true, true},
        {"an empty entity list", {noEntity}, 4, here, false, false},
        {"location matches", {atHere}, 1, here, true, true},
        {"location differs", {atHere}, 1, elsewhere, false, false},
        {"two different locations", {atHere, atElsewhere}, 1, here, false, false},
        {"entity and location both needed", {entity4, atHere}, 4, elsewhere, false, false},
        {"hit count refuses the first pass", {third}, 1, here, true, false},
        {"hit count with a rejecting entity", {third, entity9}, 4, here, false, false},
        {"an unknown filter is kept and ignored", {foreign}, 1, elsewhere, true, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        BreakpointRequest request(1);
        for (const Make& make : row.filters) {
            EXPECT_TRUE(request.addFilter(make()));
        }
        EXPECT_EQ(row.filters.size(), request.getFilters().size());
        EXPECT_EQ(row.canHit, request.canHit(row.entity, row.location));
        EXPECT_EQ(row.isHit, request.isHit(row.entity, row.location));
    }
}

TEST(EventRequests, AFiringVisitorCountsEveryCandidatePassAndASuspensionTellsOnlyItsListedEntities)
{
    RecordingListener listener;
    BreakpointRequest request(5);
    request.registerListener(listener);
    const unsigned int four[] = {4};
    ASSERT_TRUE(request.addFilter(TOV_NEW HitCountFilter(2, HitCountFilter::everyMultiple)));
    ASSERT_TRUE(request.addFilter(TOV_NEW EntitiesFilter(four, 1)));
    ASSERT_TRUE(request.addFilter(TOV_NEW LocationFilter(here)));
    EXPECT_FALSE(request.addFilter(nullptr));

    for (unsigned int entity : {4u, 9u, 4u, 4u, 9u, 4u}) {
        LocationBreakpointVisitor firing(entity, here);
        request.accept(firing);
    }
    LocationBreakpointVisitor away(4, elsewhere);
    request.accept(away);
    // Entity 9 and the other location are no candidates: the passes of entity 4 are 1 to 4.
    EXPECT_EQ((std::vector<std::string>{"breakpoint 5 4 tov:agents/forager.behavior",
                                        "breakpoint 5 4 tov:agents/forager.behavior"}),
              listener.events());
    EXPECT_EQ(5, static_cast<const HitCountFilter*>(request.getFilters()[0])->getHits());

    // A suspension rejected by its entities filters tells nobody.
    listener.clear();
    TargetSuspendRequest suspension(2);
    suspension.registerListener(listener);
    const unsigned int six[] = {6};
    ASSERT_TRUE(suspension.addFilter(TOV_NEW EntitiesFilter(four, 1)));
    EXPECT_FALSE(suspension.notify(5));
    EXPECT_TRUE(listener.events().empty());
    ASSERT_TRUE(suspension.addFilter(TOV_NEW EntitiesFilter(six, 1)));
    EXPECT_TRUE(suspension.notify(6));
    EXPECT_EQ(std::vector<std::string>{"suspension 2 6"}, listener.events());
}

TEST(EventRequests, AddFilterTakesOwnershipAlsoWhenItRefuses)
{
    int destroyed = 0;
    {
        TargetSuspendRequest suspension(1);
        EXPECT_FALSE(suspension.addFilter(TOV_NEW ForeignFilter(&destroyed)));
        EXPECT_EQ(1, destroyed);
        EXPECT_FALSE(suspension.addFilter(nullptr));
        const unsigned int none = 3;
        EXPECT_TRUE(suspension.addFilter(TOV_NEW EntitiesFilter(&none, 1)));

        std::unique_ptr<AbstractEventRequest> others[] = {
            std::make_unique<EntityRegistrationRequest>(2), std::make_unique<EntityUnregistrationRequest>(3),
            std::make_unique<InitializationRequest>(4), std::make_unique<TerminationRequest>(5),
            std::make_unique<TargetDisconnectRequest>(6)};
        for (auto& request : others) {
            EXPECT_FALSE(request->addFilter(TOV_NEW ForeignFilter(&destroyed)));
            EXPECT_FALSE(request->addFilter(nullptr));
            request->update();
        }
        EXPECT_EQ(6, destroyed);

        BreakpointRequest breakpoint(7);
        EXPECT_TRUE(breakpoint.addFilter(TOV_NEW ForeignFilter(&destroyed)));
        breakpoint.update();
        EXPECT_EQ(1, static_cast<const ForeignFilter*>(breakpoint.getFilters()[0])->updates);
    }
    // The breakpoint destroyed the filter that it kept.
    EXPECT_EQ(7, destroyed);
}

TEST(EventRequests, NotifyTellsEachListenerInOrderWithTheHandleAndTheEventData)
{
    RecordingListener first, second;
    EntityRegistrationRequest registration(11);
    EntityUnregistrationRequest unregistration(12);
    InitializationRequest initialization(13);
    TerminationRequest termination(14);
    TargetDisconnectRequest disconnection(15);
    TargetSuspendRequest suspension(16);
    BreakpointRequest breakpoint(17);
    AbstractEventRequest* all[] = {&registration,  &unregistration, &initialization, &termination,
                                   &disconnection, &suspension,     &breakpoint};

    // Without listeners the bool forms still report a finished walk.
    EXPECT_TRUE(unregistration.notify(1));
    EXPECT_TRUE(disconnection.notify());
    EXPECT_TRUE(suspension.notify(1));

    for (AbstractEventRequest* request : all) {
        request->registerListener(first);
        request->registerListener(second);
        request->registerListener(first);
        request->unregisterListener(second); // every occurrence, the order of the rest kept
        request->registerListener(second);
    }
    registration.notify(3);
    EXPECT_TRUE(unregistration.notify(3));
    initialization.notify();
    termination.notify();
    EXPECT_TRUE(disconnection.notify());
    EXPECT_TRUE(suspension.notify(3));
    breakpoint.notify(3, here);
    // The first listener is told twice, the second once, of each request in order.
    std::vector<std::string> told, once;
    for (const char* event : {"registration 11 3", "unregistration 12 3", "initialization 13", "termination 14",
                              "disconnection 15", "suspension 16 3", "breakpoint 17 3 tov:agents/forager.behavior"}) {
        told.insert(told.end(), 2, event);
        once.push_back(event);
    }
    EXPECT_EQ(told, first.events());
    EXPECT_EQ(once, second.events());

    RecordingListener unknown;
    registration.unregisterListener(unknown);
    first.clear();
    registration.notify(8);
    EXPECT_EQ((std::vector<std::string>{"registration 11 8", "registration 11 8"}), first.events());
}

TEST(RequestVisitors, EachVisitorActsOnRequestsOfItsOwnClassOnly)
{
    std::string marks;
    Marking<BreakpointRequestVisitor, BreakpointRequest> breakpoint(marks, 'B', 0u, nullptr);
    Marking<TargetSuspendRequestVisitor, TargetSuspendRequest> suspension(marks, 'S', 0u);
    Marking<EntityRegistrationRequestVisitor, EntityRegistrationRequest> registration(marks, 'R', 0u);
    Marking<EntityUnregistrationRequestVisitor, EntityUnregistrationRequest> unregistration(marks, 'U', 0u);
    Marking<InitializationRequestVisitor, InitializationRequest> initialization(marks, 'I');
    Marking<TerminationRequestVisitor, TerminationRequest> termination(marks, 'T');
    Marking<TargetDisconnectRequestVisitor, TargetDisconnectRequest> disconnection(marks, 'D');
    AbstractEventRequestVisitor* visitors[] = {&breakpoint,     &suspension,  &registration, &unregistration,
                                               &initialization, &termination, &disconnection};

    std::unique_ptr<AbstractEventRequest> requests[] = {
        std::make_unique<BreakpointRequest>(1),         std::make_unique<TargetSuspendRequest>(2),
        std::make_unique<EntityRegistrationRequest>(3), std::make_unique<EntityUnregistrationRequest>(4),
        std::make_unique<InitializationRequest>(5),     std::make_unique<TerminationRequest>(6),
        std::make_unique<TargetDisconnectRequest>(7)};
    for (auto& request : requests) {
        for (AbstractEventRequestVisitor* visitor : visitors) {
            request->accept(*visitor);
        }
        marks += '.';
    }
    EXPECT_EQ("B.S.R.U.I.T.D.", marks);
}

TEST(MainContext, ABottomFrameAtTheSimulationShowsAnEmptyObjectUntilInvalidated)
{
    struct Counting : AbstractContextVisitor {
        void visit(const DynamicObject& content) override
        {
            ++visits;
            empty = content.empty();
        }
        int visits = 0;
        bool empty = false;
    } visitor;
    MainContextFactory factory;
    std::unique_ptr<AbstractContext, void (*)(AbstractContext*)> context(
        factory.create(), [](AbstractContext* made) { TOV_DELETE(made); });
    EXPECT_EQ(Uri::create("tov:simulation"), context->getLocation());
    EXPECT_EQ(MainContext::getClassTypeId(), context->getTypeId());
    context->accept(visitor);
    context->accept(visitor);
    EXPECT_EQ(2, visitor.visits);
    EXPECT_TRUE(visitor.empty);
    context->invalidate();
    context->accept(visitor);
    EXPECT_EQ(2, visitor.visits);
}
