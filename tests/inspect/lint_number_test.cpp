// What an author would regret in numbers: how they are read, and how the pages show them.

#include "tests/inspect/lint_fixture.h"

namespace inspect_test {
namespace {

class LintNumbers : public LintTest {
protected:
    static constexpr const char* mark =
        "<ZELElementGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1001}</ZELElementGUID></Extension>";
    /// A marked integer; with an @ where the finding stands.
    static std::string Marked(const std::string& rest, bool is_found) {
        return std::string("<Integer Name=\"I\"><Extension>") + (is_found ? "@" : "") + mark +
               "<Value>1</Value>" + rest + "</Integer>";
    }
    static std::string Range(const std::string& min, const std::string& max, const std::string& inc = "") {
        return "<Min>" + min + "</Min><Max>" + max + "</Max>" + (inc.empty() ? "" : "<Inc>" + inc + "</Inc>");
    }
    static std::string Shown(const std::string& min, const std::string& max, const std::string& unit,
                             bool is_found) {
        return std::string("<Float Name=\"F\"><Extension>") + (is_found ? "@" : "") + mark +
               "<Value>1</Value>" + Range(min, max) + "<Unit>" + unit + "</Unit></Float>";
    }
    static std::string Float(const std::string& limits) {
        return "<Float Name=\"F\"><Value>1</Value>" + limits + "</Float>";
    }
};

TEST_F(LintNumbers, LimitsThatAreReadOtherwise) {
    Finds("float-limit", "warning", Float("@<Min>.5</Min>@<Max>1,5</Max>@<Inc>-.25</Inc>"),
          {"Min of Float F is .5, which is read as no number", "Max of Float F is 1,5, which is read as 1",
           "Inc of Float F is -.25, which is read as no number"});
    Finds("float-limit", "warning",
          Float("@<Min>-99999999999999999999</Min>@<Max> 9223372036854775808 </Max>"),
          {"Min of Float F is -99999999999999999999, which is read as -7.766279631452242e+18",
           "Max of Float F is 9223372036854775808, which is read as -9.223372036854776e+18"});
    Finds("float-limit", "warning",
          "<Integer Name=\"I\"><Value>1</Value></Integer>" + Float("@<Min>.5</Min>"),
          {"Min of Float F is .5, which is read as no number"});
    Finds("float-limit", "warning", Float("@<Min>-inf</Min>@<Max>0x1p4</Max>"),
          {"Min of Float F is -inf, which is read as no number",
           "Max of Float F is 0x1p4, which is read as 1"});
}

TEST_F(LintNumbers, LimitsThatAreReadAsTheyAreMeant) {
    for (const char* text :
         {"0.5", "-0.5", "+5", "5.", "1e20", "1E-3", "0x10", "9223372036854775807", "-9223372036854775808",
          "100000000000000000000.0", " 7 ", "1.5 dB", "text", ""}) {
        FindsNothing("float-limit", Float("<Min>" + std::string(text) + "</Min><Max>" + text + "</Max>"));
    }
    FindsNothing("float-limit",
                 Float("<Min>.5</Min><pMin>One</pMin>") + "<Integer Name=\"One\"><Value>1</Value></Integer>");
    FindsNothing("float-limit", "<Integer Name=\"I\"><Value>1</Value><Min>.5</Min></Integer>");
}

TEST_F(LintNumbers, SlidersWithMoreStepsThanASpinButtonCounts) {
    Finds("mark-steps", "warning", Marked(Range("0", "32768"), true),
          {"I is marked and has 32768 steps, more than 32767"});
    Finds("mark-steps", "warning", Marked(Range("-50000", "50000", "2"), true),
          {"I is marked and has 50000 steps, more than 32767"});
    FindsNothing("mark-steps", Marked(Range("0", "32767"), false));
    FindsNothing("mark-steps", Marked(Range("-50000", "50000", "4"), false));
    FindsNothing("mark-steps", Marked(Range("0", "65535", "2"), false));
    FindsNothing("mark-steps", "<Integer Name=\"I\"><Value>1</Value>" + Range("0", "50000") + "</Integer>");
}

TEST_F(LintNumbers, SlidersWhoseEndsWrap) {
    Finds("mark-steps", "warning", Marked(Range("-1", "2147483647"), true),
          {"I is marked and goes from -1 to 2147483647, a distance beyond 32 bits"});
    Finds("mark-steps", "warning", Marked(Range("-2147483648", "2147483647", "1000000"), true),
          {"I is marked and goes from -2147483648 to 2147483647, a distance beyond 32 bits"});
    FindsNothing("mark-steps", Marked(Range("0", "2147483647", "1000000"), false));
    FindsNothing("mark-steps", Marked(Range("-1", "2147483646", "1000000"), false));
    // Ends that do not fit themselves are told by the rule for them.
    FindsNothing("mark-steps", Marked(Range("0", "4294967295"), false));
    EXPECT_EQ(Lint("mark-range", Marked(Range("0", "4294967295"), false)).size(), 1U);
}

TEST_F(LintNumbers, UnitsThatHaveNoRoomBehindTheirNumber) {
    Finds("mark-unit", "warning", Shown("0", "1000000000000", "Hz", true),
          {"F is marked, and its edit has no room for Hz behind 1000000000000.000"});
    FindsNothing("mark-unit", Shown("0", "999999999999", "Hz", false));
    Finds("mark-unit", "warning", Shown("-100000000000", "1", "Hz", true),
          {"F is marked, and its edit has no room for Hz behind -100000000000.000"});
    FindsNothing("mark-unit", Shown("-99999999999", "1", "Hz", false));
    Finds("mark-unit", "warning", Shown("0", "1", "thousandths of", true),
          {"F is marked, and its edit has no room for thousandths of behind 0.000"});
    FindsNothing("mark-unit", Shown("0", "1", "thousandth of", false));
    // A character counts, not its bytes.
    FindsNothing("mark-unit",
                 Shown("0", "1", "\xC2\xB5\xC2\xB5\xC2\xB5\xC2\xB5\xC2\xB5\xC2\xB5\xC2\xB5", false));
}

TEST_F(LintNumbers, LimitsThatAreNoneSayNothingOfTheUnit) {
    const std::string unlimited =
        std::string("<Float Name=\"F\"><Extension>") + mark + "<Value>1</Value><Unit>";
    FindsNothing("mark-unit", unlimited + "Hz</Unit></Float>");
    FindsNothing("mark-unit", unlimited + "</Unit><Min>0</Min><Max>1e30</Max></Float>");
    EXPECT_EQ(Lint("mark-unit", unlimited + "thousandths of</Unit></Float>").size(), 1U);
}

// What cannot be read is no limit to compare with.
TEST_F(LintNumbers, LimitsThatCannotBeReadAreShownAsSuch) {
    const std::string broken = "<Integer Name=\"Broken\"><pValue>Nowhere</pValue></Integer>";
    Finds("mark-range", "warning", Marked("<pMin>Broken</pMin><Max>4294967295</Max>", true) + broken,
          {"I is marked and goes from ? to 4294967295, beyond 32 bits"});
    Finds("mark-range", "warning", Marked("<Min>-4294967295</Min><pMax>Broken</pMax>", true) + broken,
          {"I is marked and goes from -4294967295 to ?, beyond 32 bits"});
    FindsNothing("mark-steps", Marked("<pMin>Broken</pMin><Max>50000</Max>", false) + broken);
    FindsNothing("mark-steps", Marked("<Min>0</Min><pMax>Broken</pMax>", false) + broken);
    Finds("mark-steps", "warning", Marked(Range("0", "50000", "0"), true),
          {"I is marked and has 50000 steps, more than 32767"});
    Finds("mark-steps", "warning", Marked(Range("0", "50000") + "<pInc>Broken</pInc>", true) + broken,
          {"I is marked and has 50000 steps, more than 32767"});
    EXPECT_EQ(Lint("mark-unit", std::string("<Float Name=\"F\"><Extension>") + mark +
                                    "<Value>1</Value><pMin>Broken</pMin><Unit>thousandths of</Unit></Float>" +
                                    broken)
                  .size(),
              1U);
}

}  // namespace
}  // namespace inspect_test
