#include <tov/utils/BufferLogger.h>
#include <tov/utils/StaticObject.h>
#include <tov/utils/TypeManager.h>

#include "support/AssertionGuard.h"
#include "utils/TypeTestSupport.h"

using namespace tov::utils;
using tov::testing::idText;
using tov::testing::textsOf;

namespace {

const Uuid vector3Id = Uuid::create("f31f94dc-07a5-462f-b055-7be3506a7b36");
const Uuid dynamicObjectId = Uuid::create("0775eb00-e4e6-4c6a-83fb-a970e0cbc092");
const Uuid staticObjectId = Uuid::create("7027fee4-32de-4a3a-a634-65811d6429e2");
const Uuid unknownId = Uuid::create("00000000-0000-4000-8000-0000000000aa");

class TypeManagerTest : public tov::testing::AssertionTest {
protected:
    void SetUp() override
    {
        AssertionTest::SetUp();
        ASSERT_TRUE(types.registerBaseTypes(&log));
        ASSERT_TRUE(log.getMessages().empty());
    }

    // Registers a type under a fresh id made from `n`.
    Uuid addType(const char* name, unsigned char n)
    {
        Uuid id = unknownId;
        id.data4[7] = n;
        EXPECT_TRUE(types.registerType(id, name, &log));
        return id;
    }

    std::vector<std::string> keysByIndex(const Uuid& id) const
    {
        std::vector<std::string> keys;
        for (unsigned int i = 0; i < types.countProperties(id); ++i) {
            keys.emplace_back(types.getProperty(id, i).getKey());
        }
        return keys;
    }

    TypeManager types;
    BufferLogger log{true, true, true};
};

} // namespace

TEST_F(TypeManagerTest, BaseTypesHaveTheirNamesIdsKindsAndPropertiesAndUnregisteringThemKeepsDynamicObject)
{
    struct Row {
        const char* name;
        const char* id;
        type::Type kind;
        std::vector<std::string> properties;
    };
    const Row rows[] = {
        {"int", "1bc45061-9b2d-47a0-91e4-366d093a370b", type::integer, {}},
        {"int64", "6f6dce75-d95d-4da8-944c-94fece5c8e4d", type::integer, {}},
        {"double", "897618b0-7479-4a89-8ab7-23fa13f16316", type::real, {}},
        {"float", "8e6fc8dd-2cee-4bc0-b1d8-87142e68d777", type::real, {}},
        {"bool", "23aa4943-a9fb-4472-a4f0-35a0bf88f41e", type::boolean, {}},
        {"tov::utils::String", "ad7b0b58-c164-4d3f-be4a-327ace48624c", type::string, {}},
        {"tov::utils::Vector3r", "f31f94dc-07a5-462f-b055-7be3506a7b36", type::object, {"x", "y", "z"}},
        {"tov::utils::Vector2r", "848ef37e-0b2f-4805-85b3-f0b3b14f0fd0", type::object, {"x", "y"}},
        {"tov::utils::Quaternionr", "509e70d9-c3f4-48e6-8072-614b6805fa48", type::object, {"x", "y", "z", "w"}},
        {"tov::utils::DynamicObject", "0775eb00-e4e6-4c6a-83fb-a970e0cbc092", type::object, {}},
        {"tov::utils::StaticObject", "7027fee4-32de-4a3a-a634-65811d6429e2", type::object, {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_TRUE(types.isTypeRegistered(row.name));
        const Uuid& id = types.getTypeId(row.name);
        EXPECT_EQ(row.id, idText(id));
        EXPECT_STREQ(row.name, types.getTypeName(id));
        EXPECT_EQ(row.kind, types.getType(id));
        EXPECT_EQ(row.properties, keysByIndex(id));
    }
    EXPECT_TRUE(types.isStaticObject(staticObjectId));
    EXPECT_FALSE(types.isStaticObject(vector3Id));

    types.unregisterBaseTypes();
    for (const Row& row : rows) {
        EXPECT_EQ(std::string(row.name) == "tov::utils::DynamicObject", types.isTypeRegistered(row.name)) << row.name;
    }

    EXPECT_TRUE(types.registerBaseTypes(&log));
    EXPECT_EQ(std::vector<std::string>{"Trying to register an already registered type: 'tov::utils::DynamicObject' "
                                       "{0775eb00-e4e6-4c6a-83fb-a970e0cbc092}"},
              textsOf(log));
    EXPECT_EQ(3u, types.countProperties(vector3Id)); // not doubled by the second registration

    types.clearTypes();
    EXPECT_FALSE(types.isTypeRegistered(dynamicObjectId));
}

TEST_F(TypeManagerTest, RegistrationConflictsAreRefusedRepeatsWarnedAndAFailingBaseTypeRollsBack)
{
    const Uuid other = Uuid::create("11111111-2222-4333-8444-555555555555");
    struct Row {
        const char* label;
        Uuid id;
        const char* name;
        bool result;
        char level;
        std::string message;
    };
    const Row rows[] = {
        {"same id and name", vector3Id, "tov::utils::Vector3r", true, 'w',
         "Trying to register an already registered type: 'tov::utils::Vector3r' "
         "{f31f94dc-07a5-462f-b055-7be3506a7b36}"},
        {"same id, another name", vector3Id, "sim::Position", false, 'e',
         "While trying to register a type with name sim::Position, another type named tov::utils::Vector3r,  was "
         "found with the same id, f31f94dc-07a5-462f-b055-7be3506a7b36."},
        {"same name, another id", other, "tov::utils::Vector3r", false, 'e',
         "While trying to register a type with id {11111111-2222-4333-8444-555555555555}, another type with id "
         "{f31f94dc-07a5-462f-b055-7be3506a7b36}, was found with the same name 'tov::utils::Vector3r'."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        log.clear();
        EXPECT_EQ(row.result, types.registerType(row.id, row.name, &log));
        ASSERT_EQ(1u, log.getMessages().size());
        EXPECT_EQ(row.level, log.getMessages()[0].type);
        EXPECT_EQ(row.message, textsOf(log)[0]);
        EXPECT_FALSE(types.isTypeRegistered(other) || types.isTypeRegistered("sim::Position"));
        EXPECT_EQ(row.result, types.registerType(row.id, row.name, nullptr)); // silent without a logger
    }

    // A failing base type rolls back the ones before it.
    log.clear();
    TypeManager fresh;
    const Uuid hostFloat = Uuid::create("22222222-2222-4222-8222-222222222222");
    ASSERT_TRUE(fresh.registerType(hostFloat, "float", nullptr));
    EXPECT_FALSE(fresh.registerBaseTypes(&log));
    ASSERT_EQ(1u, log.getMessages().size());
    EXPECT_EQ(0u, textsOf(log)[0].find("While trying to register a type with id {8e6fc8dd-"));
    EXPECT_FALSE(fresh.isTypeRegistered("double"));
    EXPECT_TRUE(fresh.isTypeRegistered(hostFloat));

    // A class whose id is taken fails as a whole, and the type under that id is unregistered with it.
    TypeManager taken;
    ASSERT_TRUE(taken.registerType(staticObjectId, "sim::Impostor", nullptr));
    EXPECT_FALSE(taken.registerBaseTypes(nullptr));
    EXPECT_FALSE(taken.isTypeRegistered(staticObjectId));
    EXPECT_TRUE(taken.isTypeRegistered(dynamicObjectId));
}

TEST_F(TypeManagerTest, BaseTypesFormAnAcyclicGraph)
{
    const Uuid animal = addType("sim::Animal", 1);
    const Uuid bird = addType("sim::Bird", 2);
    const Uuid parrot = addType("sim::Parrot", 3);
    ASSERT_TRUE(types.addBaseType(bird, animal, &log));
    ASSERT_TRUE(types.addBaseType(parrot, bird, &log));
    EXPECT_TRUE(types.addBaseType(parrot, animal, &log)); // reached already: no second link
    EXPECT_TRUE(log.getMessages().empty());

    EXPECT_TRUE(types.isDerivedFrom(parrot, animal));
    EXPECT_TRUE(types.isDerivedFrom(bird, bird));
    EXPECT_FALSE(types.isDerivedFrom(animal, bird));
    EXPECT_FALSE(types.isDerivedFrom(unknownId, unknownId));

    EXPECT_FALSE(types.addBaseType(animal, parrot, &log));
    EXPECT_FALSE(types.addBaseType(bird, bird, &log));
    EXPECT_FALSE(types.addBaseType(bird, unknownId, &log));
    EXPECT_FALSE(types.addBaseType(unknownId, bird, nullptr));
    EXPECT_EQ((std::vector<std::string>{
                  "The given type,sim::Parrot, derives from the current type, sim::Animal.",
                  "The given type,sim::Bird, derives from the current type, sim::Bird.",
                  "No type having the id 00000000-0000-4000-8000-0000000000aa is registered.",
              }),
              textsOf(log));

    types.unregisterType(bird);
    EXPECT_FALSE(types.isDerivedFrom(parrot, animal)); // the link ran through the bird only
}

TEST_F(TypeManagerTest, PropertiesByNameTakeOwnFirstAndByIndexBasesFirst)
{
    // A base reached through two paths counts twice.
    const Uuid left = addType("sim::Left", 2);
    const Uuid right = addType("sim::Right", 3);
    const Uuid both = addType("sim::Both", 4);
    ASSERT_TRUE(types.addBaseType(left, vector3Id, &log));
    ASSERT_TRUE(types.addBaseType(right, vector3Id, &log));
    ASSERT_TRUE(types.addBaseType(both, left, &log));
    ASSERT_TRUE(types.addBaseType(both, right, &log));
    EXPECT_EQ(6u, types.countProperties(both));

    // A host class with properties of its own, after those of its base.
    ASSERT_TRUE(types.registerType<sim::Agent>(&log));
    ASSERT_TRUE(types.registerType<sim::Forager>(&log));
    const Uuid& forager = sim::Forager::getClassTypeId();
    EXPECT_EQ((std::vector<std::string>{"energy", "age", "speed", "heading", "eyesight"}), keysByIndex(forager));
    struct Lookup {
        const char* key;
        unsigned int length;
        const char* found;
    };
    const Lookup lookups[] = {
        {"e", 1, "eyesight"},    // own before the base's "energy"
        {"energy", 6, "energy"}, // from the base
        {"sp", 2, "speed"},      // a prefix
        {"speedy", 5, "speed"},  // only the length counts
        {"", 0, "speed"},        // nothing to compare: the first own property
    };
    for (const Lookup& lookup : lookups) {
        SCOPED_TRACE(lookup.key);
        ASSERT_TRUE(types.isPropertyRegistered(forager, lookup.key, lookup.length));
        EXPECT_STREQ(lookup.found, types.getProperty(forager, lookup.key, lookup.length).getKey());
    }
    EXPECT_FALSE(types.isPropertyRegistered(forager, "speedy"));
}

TEST_F(TypeManagerTest, GettersAssertOnWhatIsNotRegisteredAndGoOnWithEmptyAnswersWhenAssertionsReturn)
{
    const char* const unknownType = "No type having the id 00000000-0000-4000-8000-0000000000aa is registered.";
    EXPECT_ASSERTION(types.getTypeName(unknownId), unknownType);
    EXPECT_ASSERTION(static_cast<void>(types.createStaticObject(unknownId, &log)), unknownType);
    EXPECT_ASSERTION(types.getTypeId("sim::Nothing"), "No type having the name sim::Nothing is registered.");
    EXPECT_ASSERTION(types.getProperty(vector3Id, "q"),
                     "The type f31f94dc-07a5-462f-b055-7be3506a7b36 have no registered property named q");
    EXPECT_ASSERTION(types.getProperty(vector3Id, "qrs", 2),
                     "The type f31f94dc-07a5-462f-b055-7be3506a7b36 have no registered property named qr");
    EXPECT_ASSERTION(types.isPropertyRegistered(vector3Id, nullptr), "Invalid key");
    EXPECT_ASSERTION(types.getProperty(vector3Id, 3u), "Invalid property index");

    // When the assertion function returns, the getters go on with empty answers.
    setAssertionFailedFunction([](const char*, unsigned int, const char*) {});
    EXPECT_STREQ("", types.getTypeName(unknownId));
    EXPECT_FALSE(types.getTypeId("sim::Nothing").isValid());
    EXPECT_FALSE(types.getProperty(vector3Id, "q").isValid());
    EXPECT_FALSE(types.getProperty(vector3Id, nullptr).isValid());
    EXPECT_FALSE(types.getProperty(vector3Id, nullptr, 3).isValid());
    EXPECT_FALSE(types.getProperty(vector3Id, 9u).isValid());
    EXPECT_EQ(nullptr, types.createStaticObject(unknownId, &log));
    EXPECT_EQ(std::vector<std::string>{"No registered creator for ."}, textsOf(log));
}

TEST_F(TypeManagerTest, StaticObjectsAreCreatedByTypeIdThroughRegisteredCreators)
{
    ASSERT_TRUE(types.registerType<sim::Agent>(&log));
    ASSERT_TRUE(types.registerType<sim::Forager>(&log));
    const Uuid& forager = sim::Forager::getClassTypeId();
    EXPECT_TRUE(types.isStaticObject(forager));

    EXPECT_EQ(nullptr, types.createStaticObject(forager, &log));
    EXPECT_EQ(std::vector<std::string>{"No type having the id 5f0c6ad2-8e1b-4c3a-b7d4-91e2f3a4b5c6 is registered."},
              textsOf(log));
    EXPECT_EQ(nullptr, types.createStaticObject(unknownId, nullptr)); // no logger: no message to build

    ASSERT_TRUE(types.getCreatorFactory().registerCreator<sim::ForagerCreator>(forager, &log));
    StaticObject* created = types.createStaticObject(forager, &log);
    ASSERT_NE(nullptr, created);
    EXPECT_EQ(forager, created->getTypeId());
    EXPECT_EQ(10.0, static_cast<sim::Forager*>(created)->getEyesight());
    types.destroyStaticObject(created);
    types.destroyStaticObject(nullptr);

    // The creator goes with its type, and clearTypes leaves creators alone.
    types.unregisterType(forager);
    EXPECT_FALSE(types.getCreatorFactory().isRegistered(forager));
    ASSERT_TRUE(types.getCreatorFactory().registerCreator<sim::ForagerCreator>(forager, nullptr));
    types.clearTypes();
    EXPECT_TRUE(types.getCreatorFactory().isRegistered(forager));
}
