// Small descriptions that ask for very much, on the whole way to live nodes.

#include "CacheSupport.h"
#include "GenApi/ICategory.h"

namespace EngineTest {

namespace {

std::string CategoryXml(const std::string& name, const std::vector<std::string>& features) {
    std::string xml = "<Category Name=\"" + name + "\">";
    for (const std::string& feature : features) {
        xml += Element("pFeature", feature);
    }
    return xml + "</Category>";
}

/// Categories A and B on each level, which both list both of the next; one leaf
/// is for experts.
std::string CategoryDiamonds(int levels) {
    std::string xml = CategoryXml("Root", {"A0", "B0"});
    for (int i = 0; i < levels; ++i) {
        for (const char* const name : {"A", "B"}) {
            xml += CategoryXml(Numbered(name, i), {Numbered("A", i + 1), Numbered("B", i + 1)});
        }
    }
    return xml + IntegerXml(Numbered("A", levels), Element("Visibility", "Guru")) +
           IntegerXml(Numbered("B", levels), Element("Visibility", "Expert"));
}

/// Formulas A and B on each level, which both read both of the level before. The
/// first A is selected.
std::string SelectedDiamonds(int levels) {
    std::string xml = IntegerXml("S", "", "<Value>1</Value>" + Element("pSelected", "A0")) +
                      IntegerXml("A0") + IntegerXml("B0");
    for (int i = 1; i <= levels; ++i) {
        for (const char* const name : {"A", "B"}) {
            xml += "<IntSwissKnife Name=\"" + Numbered(name, i) + "\"><pVariable Name=\"A\">" +
                   Numbered("A", i - 1) + "</pVariable><pVariable Name=\"B\">" +
                   Numbered("B", i - 1) + "</pVariable><Formula>A+B</Formula></IntSwissKnife>";
        }
    }
    return xml;
}

std::string FailureOfLoading(const std::string& body) {
    CNodeMapFactory factory(Description(body), CacheUsage_Automatic);
    return DescriptionOf<RuntimeException>([&] { MapOwner(factory.CreateNodeMap()); });
}

const char* const kTooManyProperties =
    "Error in XML stream : the nodes are linked too closely, preprocessing would add more than "
    "16000000 properties";

TEST(HostileShape, IsRefusedWithATextThatSaysWhy) {
    const CacheFolder folder;
    EXPECT_EQ(FailureOfLoading(CategoryDiamonds(50)), kTooManyProperties);
    EXPECT_EQ(FailureOfLoading(SelectedDiamonds(40)), kTooManyProperties);
    std::string chain = IntegerXml("N10000");
    for (int i = 0; i < 10000; ++i) {
        chain += IntegerXml(Numbered("N", i), "", Element("pValue", Numbered("N", i + 1)));
    }
    EXPECT_EQ(FailureOfLoading(chain), kTooManyProperties);
    EXPECT_TRUE(folder.Files().empty());
}

TEST(HostileShape, TellsCategoriesTheirVisibilityThroughDiamonds) {
    const CacheFolder folder;
    // The second one comes from the cache.
    for (int attempt = 0; attempt < 2; ++attempt) {
        CNodeMapFactory factory(Description(CategoryDiamonds(12)), CacheUsage_Automatic);
        const MapOwner map(factory.CreateNodeMap());
        for (const char* const name : {"Root", "A0", "B11"}) {
            EXPECT_EQ(map->GetNode(name)->GetVisibility(), Expert) << name;
            EXPECT_EQ(map->GetNode(name)->GetAccessMode(), RO) << name;
        }
    }
}

TEST(HostileShape, TellsTheCachingModeThroughDiamonds) {
    CNodeMapFactory factory(Description(SelectedDiamonds(16)));
    const MapOwner map(factory.CreateNodeMap());
    EXPECT_EQ(map->GetNode("A16")->GetCachingMode(), WriteThrough);
    EXPECT_EQ(map->GetNode("A16")->IsAccessModeCacheable(), Yes);
}

}  // namespace

}  // namespace EngineTest
