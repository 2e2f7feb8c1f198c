#include <tov/allocator/Allocator.h>
#include <tov/utils/BufferLogger.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicValue.h>
#include <tov/utils/Memory.h>
#include <tov/utils/Property.h>
#include <tov/utils/TypeManager.h>
#include <tov/utils/Vector2.h>
#include <tov/utils/Vector3.h>
#include <tov/utils/details/PutInspectableObjectHelper.h>

#include "support/AssertionGuard.h"
#include "utils/TypeTestSupport.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <utility>

using namespace tov::utils;
using tov::testing::textsOf;
using Vector3r = Vector3<double>;

namespace {

class PropertyTest : public tov::testing::AssertionTest {
protected:
    void SetUp() override
    {
        AssertionTest::SetUp();
        ASSERT_TRUE(types.registerBaseTypes(nullptr));
        ASSERT_TRUE(types.registerType<sim::Agent>(nullptr));
        ASSERT_TRUE(types.registerType<sim::Forager>(nullptr));
    }

    const Property& foragerProperty(const char* key) const
    {
        return types.getProperty(sim::Forager::getClassTypeId(), key);
    }

    TypeManager types;
    BufferLogger log{true, true, true};
};

} // namespace

TEST_F(PropertyTest, ADefaultPropertyIsInvalidAndABoundOneDescribesItsValue)
{
    Property property;
    EXPECT_FALSE(property.isValid());
    EXPECT_FALSE(property.isVector3());
    EXPECT_FALSE(property.isDynamicObject());
    EXPECT_FALSE(property.isStaticObject());
    EXPECT_ASSERTION(property.getKey(), "Invalid property.");
    EXPECT_ASSERTION(property.getType(), "Invalid property.");
    EXPECT_ASSERTION(property.hasMutableGet(), "Invalid property.");
    Vector3r position;
    EXPECT_ASSERTION((property.set<Vector3r, double>(position, 1.0)), "Invalid property.");

    // A bound one describes its value.
    const Property& x = types.getProperty(details::getClassTypeId<Vector3r>(), "x");
    EXPECT_TRUE(x.isReal());
    EXPECT_FALSE(x.isObject());
    EXPECT_FALSE(x.hasMutableGet());
    EXPECT_FALSE(x.isVector3());
    EXPECT_STREQ("double", x.getTypeName());
    EXPECT_EQ(details::getClassTypeId<Vector3r>(), x.getOwnerTypeId());
    std::ostringstream text;
    text << x;
    EXPECT_EQ("double::x", text.str());

    const Property& heading = foragerProperty("heading");
    EXPECT_TRUE(heading.isVector3());
    EXPECT_FALSE(heading.isStaticObject());
    EXPECT_FALSE(heading.isVector2() || heading.isQuaternion() || heading.isDynamicObject());
    EXPECT_TRUE(foragerProperty("age").isInt());
}

TEST_F(PropertyTest, SetAccessorsRefusesWhatItCannotBind)
{
    TypeManager onlyVector3;
    ASSERT_TRUE(onlyVector3.registerType(details::getClassTypeId<Vector3r>(), "tov::utils::Vector3r", nullptr));
    TypeManager empty;
    const auto getter = &Vector3r::getX;
    const auto setter = &Vector3r::setX;
    struct Row {
        const char* key;
        bool withGetter;
        bool withSetter;
        const TypeManager& manager;
        const char* message;
    };
    const Row rows[] = {
        {nullptr, true, true, types, "Invalid property name."}, {"", true, true, types, "Invalid property name."},
        {"x", false, true, types, "Invalid getter pointer."},   {"x", true, false, types, "Invalid getter pointer."},
        {"x", true, true, empty, "Invalid owner type."},        {"x", true, true, onlyVector3, "Invalid value type."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.message);
        Property property;
        // A property that was bound before loses its binding on failure.
        ASSERT_TRUE(property.setAccessors("y", &Vector3r::getY, &Vector3r::setY, types, nullptr));
        log.clear();
        EXPECT_FALSE(property.setAccessors(row.key, row.withGetter ? getter : nullptr,
                                           row.withSetter ? setter : nullptr, row.manager, &log));
        EXPECT_EQ(std::vector<std::string>{row.message}, textsOf(log));
        EXPECT_EQ('e', log.getMessages()[0].type);
        EXPECT_FALSE(property.isValid());
        EXPECT_FALSE(property.isVector3());
    }
    EXPECT_FALSE(empty.registerProperty("x", &Vector3r::getX, &Vector3r::setX, &log));
    EXPECT_EQ("No type having the id f31f94dc-07a5-462f-b055-7be3506a7b36 is registered.", textsOf(log).back());
}

TEST_F(PropertyTest, CompatibilityFollowsTheValueKind)
{
    struct Row {
        const char* key;
        std::vector<type::Type> compatible;
    };
    const Row rows[] = {
        {"speed", {type::integer, type::real}},
        {"age", {type::integer, type::real}},
        {"heading", {type::object}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.key);
        const Property& property = foragerProperty(row.key);
        for (type::Type kind :
             {type::null, type::integer, type::real, type::string, type::boolean, type::array, type::object}) {
            const bool expected = std::find(row.compatible.begin(), row.compatible.end(), kind) != row.compatible.end();
            EXPECT_EQ(expected, property.isTypeCompatible(kind)) << toString(kind);
        }
    }
}

TEST_F(PropertyTest, ValuesAreReadAndWrittenThroughTheHolder)
{
    sim::Forager forager;
    const Property& speed = foragerProperty("speed");
    EXPECT_TRUE((speed.set<sim::Forager, double>(forager, 3.5)));
    EXPECT_EQ(3.5, forager.getSpeed());
    EXPECT_EQ(&forager.getSpeed(), (speed.get<sim::Forager, double>(forager)));

    const Property& heading = foragerProperty("heading");
    EXPECT_TRUE(heading.set(forager, Vector3r(1.0, 2.0, 3.0)));
    EXPECT_EQ(Vector3r(1.0, 2.0, 3.0), *(heading.get<sim::Forager, Vector3r>(forager)));

    // A property of the base reads the base's part of the object.
    const Property& energy = foragerProperty("energy");
    sim::Agent& agent = forager;
    EXPECT_TRUE(energy.set(agent, 0.25));
    EXPECT_EQ(0.25, forager.getEnergy());

    // Other types than those bound read and write nothing.
    EXPECT_EQ(nullptr, (speed.get<sim::Forager, float>(forager)));
    EXPECT_FALSE((speed.set<sim::Agent, double>(agent, 9.0)));
    EXPECT_EQ(3.5, forager.getSpeed());

    EXPECT_ASSERTION((speed.mutableGet<sim::Forager, double>(forager)), "Mutable get not available");
}

TEST_F(PropertyTest, CopiesOwnTheirHolders)
{
    const tov::allocator::Allocator& memory = tov::allocator::Allocator::instance();
    const unsigned long long liveBlocks = memory.getLiveBlocks();
    Vector3r position;
    {
        Property* original = TOV_NEW Property(types.getProperty(details::getClassTypeId<Vector3r>(), "z"));
        Property copy(*original);
        Property assigned;
        assigned = copy;
        assigned = types.getProperty(details::getClassTypeId<Vector3r>(), "y"); // over a valid one
        const auto& itself = assigned; // spelled so, the compiler does not object to the case under test
        assigned = itself;
        TOV_DELETE(original);
        EXPECT_TRUE(copy.set(position, 4.0));
        EXPECT_TRUE(assigned.set(position, 5.0));
    }
    EXPECT_EQ(Vector3r(0.0, 5.0, 4.0), position);
    EXPECT_EQ(liveBlocks, memory.getLiveBlocks());
}

TEST_F(PropertyTest, TypedValuesArePutIntoDynamicObjects)
{
    DynamicObject object;
    const auto put = [&](const char* key, const auto& value) {
        return details::putInspectableObjectHelper(object, object.addProperty(key), value, types, nullptr);
    };
    EXPECT_TRUE(put("int", -1));
    EXPECT_TRUE(put("int64", -(1LL << 40)));
    EXPECT_TRUE(put("bool", true));
    EXPECT_TRUE(put("float", 2.5f));
    EXPECT_TRUE(put("double", 0.1));
    EXPECT_TRUE(put("string", String("fora\0ger", 8)));
    DynamicObject pose;
    pose.setReal("at.x", 1.5);
    pose.setString("label", "home");
    EXPECT_TRUE(put("pose", pose));

    EXPECT_EQ(-1LL, object.getInt("int"));
    EXPECT_EQ(-(1LL << 40), object.getInt("int64"));
    EXPECT_TRUE(object.getBool("bool"));
    EXPECT_EQ(type::real, object.getType("float"));
    EXPECT_EQ(2.5, object.getReal("float"));
    EXPECT_EQ(0.1, object.getReal("double"));
    EXPECT_EQ(0, std::memcmp("fora\0ger", object.getString("string"), 8));
    EXPECT_EQ(1.5, object.getReal("pose.at.x"));
    EXPECT_STREQ("home", object.getString("pose.label"));
}

TEST_F(PropertyTest, DynamicObjectsAreCheckedAgainstRegisteredTypes)
{
    const Uuid& forager = sim::Forager::getClassTypeId();
    struct Row {
        const char* label;
        std::vector<std::pair<const char*, DynamicValue>> members;
        bool compatible;
    };
    const Row rows[] = {
        {"empty object", {}, true},
        {"matching members", {{"speed", DynamicValue(2)}, {"energy", DynamicValue(1.0)}}, true},
        {"unknown members are ignored", {{"colour", DynamicValue("red")}}, true},
        {"a string for a real", {{"speed", DynamicValue("fast")}}, false},
        {"a member of the base", {{"age", DynamicValue(true)}}, false},
        {"nested match", {{"heading.x", DynamicValue(1.0)}, {"heading.z", DynamicValue(0)}}, true},
        {"nested mismatch", {{"heading.x", DynamicValue(1.0)}, {"heading.y", DynamicValue("up")}}, false},
        {"a scalar has no members to conflict", {{"heading", DynamicValue(3)}}, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        DynamicObject object;
        for (const auto& member : row.members) {
            object.setValue(member.first, member.second);
        }
        EXPECT_EQ(row.compatible, object.isTypeCompatible(object.getRoot(), forager, types));
    }

    DynamicObject object;
    object.setInt("count", 3);
    object.setString("label", "forager");
    EXPECT_TRUE(object.isTypeCompatible("count", details::getClassTypeId<double>(), types));
    EXPECT_FALSE(object.isTypeCompatible("label", details::getClassTypeId<double>(), types));
    EXPECT_TRUE(object.isTypeCompatible("labelled", 5, details::getClassTypeId<String>(), types));
    EXPECT_FALSE(object.isTypeCompatible("missing", details::getClassTypeId<int>(), types));
    EXPECT_FALSE(object.isTypeCompatible(0u, details::getClassTypeId<int>(), types));
    EXPECT_FALSE(object.isTypeCompatible(object.getRoot(), Uuid(), types));
}
