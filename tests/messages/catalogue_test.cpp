// Catalogue files: what is read of them, what is wrong with them, and what a module has of them.
#include <sys/stat.h>

#include <map>
#include <vector>

#include "messages/NvMessageManager.h"
#include "messages/tvErrorManager.h"
#include "tests/messages/CatalogueFolder.h"

namespace juntora::test {
namespace {

using Texts = std::vector<std::string>;

struct Reading {
    explicit Reading(const std::string& bytes) {
        Complaints complaints;
        catalogue = Catalogue::read(bytes, "TVX", &complaints);
        told = complaints.told("c.xml", bytes);
    }
    const std::vector<CataloguedMessage>& messages() const { return catalogue->messages(); }

    std::unique_ptr<Catalogue> catalogue;
    Texts told;
};

TEST(CatalogueTest, HasTheMessagesOfItsFile) {
    const Reading reading(
        "\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?>\r\n<!-- for translators -->\r\n"
        "<catalogue module='TVX'>\r\n"
        "<message number='4294967295' kind='warning'>"
        "<parameter>the file</parameter><parameter/>"
        "<text>\r\n  %2 &lt;%1&gt; &amp; 100 %% &#xE4;\r\n  </text>"
        "<help><![CDATA[<p>a &nbsp; b</p>\r\n]]></help></message>\r\n"
        "<message number='0' kind='plain'><text>t</text></message>\r\n"
        "<message number='7' kind='question'><text><![CDATA[<b> ]]></text><help/></message>"
        "<message number='8' kind='error'><text>t</text><help>a<p/></help></message>"
        "</catalogue>");
    EXPECT_EQ(
        reading.told,
        (Texts{"c.xml:9: message \"8\": its <help> is not one piece of text: characters, or one "
               "<![CDATA[...]]>."}));
    ASSERT_EQ(reading.messages().size(), 3U);
    const CataloguedMessage& first = reading.messages()[0];
    EXPECT_EQ(first.number, 4294967295U);
    EXPECT_EQ(first.type, NVM_WARNING);
    EXPECT_EQ(first.parameters, 2U);
    EXPECT_EQ(first.text, "%2 <%1> & 100 %% \u00E4");
    EXPECT_EQ(first.help, "<p>a &nbsp; b</p>\n");
    EXPECT_EQ(reading.messages()[1].type, NVM_PLAIN);
    EXPECT_EQ(reading.messages()[2].text, "<b> ");
    EXPECT_EQ(reading.messages()[2].help, "");
}

TEST(CatalogueTest, LeavesOutWhatIsWrongAndSaysWhere) {
    const auto message = [](const std::string& attributes, const std::string& parts) {
        return "<message " + attributes + ">" + parts + "</message>";
    };
    const std::string fine = "number='5' kind='plain'";
    const struct {
        std::string element;
        std::string complaint;
    } cases[] = {
        {message("number='4294967296' kind='plain'", "<text>t</text>"),
         "message \"4294967296\": its number is not one from 0 to 4294967295"},
        {message("number='-1' kind='plain'", "<text>t</text>"),
         "message \"-1\": its number is not one from 0 to 4294967295"},
        {message("kind='plain'", "<text>t</text>"),
         "message \"\": its attributes are not number and kind, once each"},
        {message("number='5' kind='plain' colour='red'", "<text>t</text>"),
         "message \"5\": its attributes are not number and kind, once each"},
        {message("number='5' kind='plain' kind='plain'", "<text>t</text>"),
         "message \"5\": its attributes are not number and kind, once each"},
        {message("number='" + std::string(99, '7') + "' kind='plain'", "<text>t</text>"),
         "message \"" + std::string(40, '7') + "...\": its number is not one from 0 to 4294967295"},
        {message("number='5' kind='Error'", "<text>t</text>"),
         "message \"5\": its kind is not one of plain, error, warning, information, question"},
        {message("number='1' kind='plain'", "<text>again</text>"),
         "message \"1\": its number is there already"},
        {message(fine, "<text>a %2</text>"),
         "message \"5\": its text has the placeholder %2, and there are 0 parameters"},
        {message(fine, "<parameter/><parameter/><text>%1</text>"),
         "message \"5\": its parameter 2 is not in its text: %2 is missing"},
        {message(fine, "<text>100 %</text>"),
         "message \"5\": its text has a \"%\" that is neither one of \"%1\" to \"%9\" nor doubled"},
        {message(fine, "<text>%0</text>"),
         "message \"5\": its text has a \"%\" that is neither one of \"%1\" to \"%9\" nor doubled"},
        {message(fine,
                 "<parameter/><parameter/><parameter/><parameter/><parameter/><parameter/>"
                 "<parameter/><parameter/><parameter/><parameter/><text>t</text>"),
         "message \"5\": it has more than nine parameters"},
        {message(fine, "<help>h</help>"), "message \"5\": it has no <text> behind its parameters"},
        {message(fine, "<text> </text>"), "message \"5\": its <text> is empty"},
        {message(fine, "<text>a<b/></text>"),
         "message \"5\": its <text> is not one piece of text: characters, or one <![CDATA[...]]>"},
        {message(fine, "<text>t</text><parameter/>"),
         "message \"5\": there is a <parameter> that does not belong there"},
        {message(fine, "<text>a\xC0\xAF</text>"), "message \"5\": its <text> is not UTF-8"},
        {message(fine, "<text>t</text><help>\xFF</help>"),
         "message \"5\": its <help> is not UTF-8"},
        {message(fine, "<text>t</text>stray"),
         "message \"5\": there is text outside of its elements"},
        {message(fine, "<text>a <!-- b --> c</text>"),
         "message \"5\": its <text> is not one piece of text: characters, or one <![CDATA[...]]>"},
        {"<mesage/>", "only <message> elements may stand here"},
        {"stray", "only <message> elements may stand here"},
    };
    for (const auto& each : cases) {
        const Reading reading(
            "<catalogue module='TVX'>\n<message number='1' kind='error'><text>a</text></message>\n"
            "\n" +
            each.element +
            "\n"
            "<message number='9' kind='error'><text>z</text></message></catalogue>");
        EXPECT_EQ(reading.told, (Texts{"c.xml:4: " + each.complaint + "."}));
        ASSERT_EQ(reading.messages().size(), 2U) << each.complaint;
        EXPECT_EQ(reading.messages()[1].number, 9U);
    }
}

TEST(CatalogueTest, HasUtf8AtEveryPlaceOfALongText) {
    const auto messagesWith = [](const std::string& text) {
        return Reading("<catalogue module='TVX'><message number='1' kind='error'><text>" + text +
                       "</text></message></catalogue>")
            .messages()
            .size();
    };
    for (std::size_t before = 0; before < 20; ++before) {
        const std::string plain(before, 'a');
        EXPECT_EQ(messagesWith(plain + std::string("\u00E4\u20AC\U0001F600").append(plain)), 1U)
            << before;
        for (const char* bad : {"\x80", "\xC0\xAF", "\xED\xA0\x80", "\xE2\x82", "\xFF"}) {
            EXPECT_EQ(messagesWith(plain + std::string(bad).append(plain)), 0U)
                << before << " " << bad;
        }
    }
}

TEST(CatalogueTest, HasTheReferencesOfXml) {
    const auto textWith = [](const std::string& reference) {
        const Reading reading("<catalogue module='TVX'><message number='1' kind='error'><text>a" +
                              reference + "b" + reference + "</text></message></catalogue>");
        return reading.messages().empty() ? "none" : std::string(reading.messages()[0].text);
    };
    const struct {
        const char* reference;
        const char* stands;
    } cases[] = {{"&lt;", "<"},        {"&gt;", ">"},         {"&amp;", "&"},
                 {"&quot;", "\""},     {"&apos;", "'"},       {"&#10;c", "\nc"},
                 {"&#xe4;", "\u00E4"}, {"&#8364;", "\u20AC"}, {"&#x10fffd;", "\U0010FFFD"},
                 {"&amp;lt;", "&lt;"}, {"&#00000065;", "A"}};
    for (const auto& each : cases) {
        EXPECT_EQ(textWith(each.reference),
                  std::string("a").append(each.stands).append("b").append(each.stands));
    }
    for (const char* none :
         {"&nbsp;", "&", "& ", "&#0;", "&#x0;", "&#4294967296;", "&#x110000;", "&#xD800;", "&#;",
          "&#x;", "&#-1;", "&#+1;", "&#1x;", "&lt", "&;", "&LT;"}) {
        EXPECT_EQ(textWith(none), "none") << none;
    }
    EXPECT_EQ(textWith("<![CDATA[&#0;]]>"), "none") << "in several pieces";
    EXPECT_EQ(Reading("<catalogue module='TVX'><message number='1' kind='error'><text><![CDATA[&#0;"
                      "&x]]></text></message></catalogue>")
                  .messages()[0]
                  .text,
              "&#0;&x");
}

TEST(CatalogueTest, IsEmptyWhereTheFileIsNone) {
    const std::string head = "<catalogue module='TVX'>";
    const struct {
        std::string bytes;
        std::string complaint;
    } cases[] = {
        {"", "c.xml:1: this is not well-formed XML: "},
        {"\n\n", "c.xml:2: this is not well-formed XML: "},
        {head + "\n<message number='1' kind='error'><text>a</text></message>\n<mess",
         "c.xml:3: this is not well-formed XML: "},
        {head + "\n</message>", "c.xml:2: this is not well-formed XML: "},
        {"<catalog module='TVX'/>", "c.xml:1: the outermost element is no <catalogue>"},
        {"<catalogue module='tvx'/>",
         "c.xml:1: this is a catalogue of the module \"tvx\", not of \"TVX\" alone"},
        {std::string("<\0c\0", 4), "c.xml:1: there is a zero byte"},
        {"\n<!DOCTYPE c [<!ENTITY a 'ha'><!ENTITY b '&a;&a;&a;'>]>\n" + head +
             "<message number='1' kind='error'><text>&b;</text></message></catalogue>",
         "c.xml:2: a catalogue has no <!DOCTYPE>"},
    };
    for (const auto& each : cases) {
        const Reading reading(each.bytes);
        EXPECT_TRUE(reading.messages().empty()) << each.complaint;
        ASSERT_EQ(reading.told.size(), 1U) << each.complaint;
        EXPECT_EQ(reading.told[0].substr(0, each.complaint.size()), each.complaint);
    }
    const Reading two(
        "<catalogue module='TVX'><message number='1' kind='error'><text>a</text>"
        "</message></catalogue>\n<catalogue module='TVX'/>");
    EXPECT_EQ(two.messages().size(), 1U);
    EXPECT_EQ(two.told, (Texts{"c.xml:2: there is a <catalogue> behind the <catalogue>: a file has "
                               "one, and nothing else."}));
    // Deeper than any stack.
    std::string deep = head;
    for (int i = 0; i < 300'000; ++i) {
        deep += "<message>";
    }
    const Reading reading(deep);
    EXPECT_TRUE(reading.messages().empty());
    EXPECT_EQ(reading.told.size(), 1U);
}

/// Notes what it is asked to register, and keeps what it has of modules to itself.
class NotingManager : public tvErrorManager {
public:
    Texts registered;
    bool knows(const std::string& module) const { return moduleCatalogs.contains(module); }
    bool registerCatalogFile(const char* module, const char* catalogue) override {
        registered.emplace_back(catalogue);
        return tvErrorManager::registerCatalogFile(module, catalogue);
    }
};

class ModuleTest : public CatalogueFolder {
protected:
    ~ModuleTest() override { NvMessageManager::exitMS(); }

    /// What is shown while a module is loaded: the boxes, which nobody sees, on standard error.
    static std::string shownAt(NotingManager& manager, const char* module, bool result) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(manager.loadModuleCatalogs(module), result);
        return testing::internal::GetCapturedStderr();
    }
    static std::size_t boxesIn(const std::string& shown) {
        std::size_t count = 0;
        for (std::size_t at = 0; (at = shown.find("(answered", at)) != std::string::npos; ++at) {
            ++count;
        }
        return count;
    }
    static std::string textOf(const char* module, unsigned long number) {
        const CataloguedMessage* found = NvMessageManager::getInstance()->find(module, number);
        return found ? std::string(found->text) : "none";
    }
};

TEST_F(ModuleTest, IsLoadedOnceAndKeepsWhatIsGood) {
    write("modules.txt",
          "# module  files\nTVA a.xml gone.xml\tb.xml\r\n\nTVA c.xml # more\nTVB b.xml");
    write("a.xml", catalogue("TVA", message(1, "one")));
    write("b.xml", catalogue("TVA", message(2, "two")));
    write("c.xml", catalogue("TVA", message(3, "three") + message(1, "one again")));
    NotingManager manager;
    EXPECT_TRUE(manager.registered.empty()) << "nothing is read before a module is asked for";
    const std::string shown = shownAt(manager, "TVA", false);
    EXPECT_EQ(manager.registered, (Texts{"a.xml", "gone.xml", "b.xml", "c.xml"}));
    EXPECT_EQ(boxesIn(shown), 2U) << shown;
    EXPECT_NE(shown.find("The message catalogue gone.xml is not in "), std::string::npos) << shown;
    EXPECT_NE(shown.find(file("c.xml") +
                         ":3: message \"1\": its number is in another catalogue of TVA already."),
              std::string::npos)
        << shown;
    EXPECT_EQ(textOf("TVA", 1) + textOf("TVA", 2) + textOf("TVA", 3), "onetwothree");
    EXPECT_EQ(textOf("TVA", 4) + textOf("tva", 1), "nonenone");

    EXPECT_EQ(shownAt(manager, "TVA", true), "") << "a failure is not tried again";
    EXPECT_EQ(manager.registered.size(), 4U);

    EXPECT_FALSE(manager.knows("TVNONE"));
    EXPECT_EQ(shownAt(manager, "TVNONE", true), "");
    EXPECT_TRUE(manager.knows("TVNONE"));
    EXPECT_TRUE(manager.knows("TVCOMMN")) << "a folder's table adds to the installed one";
    EXPECT_EQ(manager.registered.size(), 4U);
}

TEST_F(ModuleTest, TellsAllThatIsWrongWithAFileInOneBox) {
    write("modules.txt", "TVA a.xml\nTVB b.xml");
    write("a.xml", catalogue("TVA", "<x/>\n<y/>\n<z/>\n"));
    NotingManager manager;
    std::string shown = shownAt(manager, "TVA", false);
    EXPECT_EQ(boxesIn(shown), 1U);
    const std::string wrong = ": only <message> elements may stand here.\n    \n";
    const std::string at = "    " + file("a.xml") + ":";
    EXPECT_NE(shown.find("\n" + at + "2" + wrong + at + "3" + wrong + at + "4" + wrong),
              std::string::npos)
        << shown;

    std::string many;
    for (int i = 0; i < 1000; ++i) {
        many += "<x/>";
    }
    write("b.xml", catalogue("TVB", many));
    shown = shownAt(manager, "TVB", false);
    EXPECT_NE(shown.find(file("b.xml") + ": and 992 mistakes more."), std::string::npos) << shown;
}

TEST_F(ModuleTest, OutlivesFilesThatAreNoCatalogues) {
    write("empty.xml", "");
    write("large.xml", "");
    std::filesystem::resize_file(file("large.xml"), 100U << 20);
    std::filesystem::create_directory(file("folder.xml"));
    std::filesystem::create_symlink("nowhere", file("link.xml"));
    ASSERT_EQ(mkfifo(file("pipe.xml").c_str(), 0600), 0);
    write("good.xml", catalogue("TVA", message(1, "good")));
    write("modules.txt", "TVA empty.xml large.xml folder.xml link.xml pipe.xml good.xml");
    NotingManager manager;
    const std::string shown = shownAt(manager, "TVA", false);
    EXPECT_EQ(boxesIn(shown), 5U) << shown;
    EXPECT_NE(shown.find("large.xml: the file is larger than 32 MiB"), std::string::npos) << shown;
    EXPECT_EQ(textOf("TVA", 1), "good");
}

TEST_F(ModuleTest, IsUnknownWhereItsTableCannotBeRead) {
    std::filesystem::create_directory(file("modules.txt"));
    testing::internal::CaptureStderr();
    NotingManager manager;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    const std::string shown = shownAt(manager, "TVNONE", true);
    EXPECT_EQ(boxesIn(shown), 1U);
    EXPECT_NE(shown.find(file("modules.txt") + ": this is not a file that can be read."),
              std::string::npos)
        << shown;
    EXPECT_TRUE(manager.knows("TVCOMMN"));
    EXPECT_EQ(shownAt(manager, "TVOTHER", true), "") << "once";
}

TEST_F(ModuleTest, SaysWhereTablesAreLookedForIfThereIsNone) {
    setenv("JUNTORA_ROOT", file("nowhere").c_str(), 1);
    NotingManager manager;
    unsetenv("JUNTORA_ROOT");
    const std::string shown = shownAt(manager, "TVCOMMN", true);
    EXPECT_NE(shown.find("The table of message catalogues, modules.txt, is not in " +
                         file("nowhere") + "/share/voltara/catalogues/ or " + file("")),
              std::string::npos)
        << shown;
}

TEST_F(ModuleTest, MayBeAskedForAnewAfterItsEnd) {
    write("modules.txt", "\xEF\xBB\xBFTVA a.xml a.xml ../a.xml");
    write("a.xml", catalogue("TVA", message(1, "before")));
    tvErrorManager* first = tvErrorManager::getInstance();
    EXPECT_EQ(tvErrorManager::getInstance(), first);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(first->loadModuleCatalogs("TVA"));
    const std::string shown = testing::internal::GetCapturedStderr();
    EXPECT_EQ(boxesIn(shown), 1U) << shown;
    EXPECT_NE(shown.find("../a.xml: a catalogue is named by its file alone"), std::string::npos);
    EXPECT_EQ(textOf("TVA", 1), "before");

    tvErrorManager::exitService();
    tvErrorManager::forgetInstance();
    write("modules.txt", "TVA a.xml");
    write("a.xml", catalogue("TVA", message(1, "after")));
    tvErrorManager* second = tvErrorManager::getInstance();
    EXPECT_NE(second, first);
    EXPECT_TRUE(second->loadModuleCatalogs("TVA"));
    EXPECT_EQ(textOf("TVA", 1), "after");
    tvErrorManager::forgetInstance();
    delete first;
    delete second;
}

}  // namespace
}  // namespace juntora::test
