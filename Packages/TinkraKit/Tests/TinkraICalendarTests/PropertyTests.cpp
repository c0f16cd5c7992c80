#include "TinkraICalendar/Property.h"
#include "TinkraICalendar/PropertyName.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

namespace {

std::string parameterOf(std::string_view parameters, std::string_view name)
{
    std::string buffer;
    return std::string{parameter(parameters, name, buffer)};
}

std::string unescaped(std::string_view value)
{
    std::string out;
    appendText(out, value);
    return out;
}

}

TEST(Property, DividesAtTheFirstColonOutsideQuotes)
{
    EXPECT_EQ(divide("SUMMARY:a:b", 7).value, "a:b");
    const auto quoted = divide(R"(SUMMARY;X="a:b;c,d";LANGUAGE=de:e:f)", 7);
    EXPECT_EQ(quoted.parameters, R"(;X="a:b;c,d";LANGUAGE=de)");
    EXPECT_EQ(quoted.value, "e:f");
}

TEST(Property, DividesAtTheFirstColonWhenAQuotationIsNotFinished)
{
    EXPECT_EQ(divide("SUMMARY;X=\"a:b", 7).value, "b");
}

TEST(Property, HasAnEmptyValueWithoutAColon)
{
    EXPECT_EQ(divide("SUMMARY", 7).value, "");
    EXPECT_EQ(divide("SUMMARY;X=1", 7).value, "");
}

TEST(Property, FindsAParameterByNameInAnyCaseAndWithoutItsQuotes)
{
    EXPECT_EQ(parameterOf(";VALUE=DATE", "VALUE"), "DATE");
    EXPECT_EQ(parameterOf(";x=\"TZID=no;TZID=no\";tzid=\"Europe/Berlin\"", "TZID"), "Europe/Berlin");
    EXPECT_EQ(parameterOf("; TZID = W. Europe Standard Time ", "TZID"), "W. Europe Standard Time");
    EXPECT_EQ(parameterOf(";XTZID=a;TZIDX=b", "TZID"), "");
    EXPECT_EQ(parameterOf("", "TZID"), "");
}

TEST(Property, ResolvesTheCircumflexEscapesOfParameters)
{
    EXPECT_EQ(parameterOf(";CN=a^nb^^c^'d^e", "CN"), "a\nb^c\"d^e");
}

TEST(Property, ResolvesTheEscapesOfText)
{
    EXPECT_EQ(unescaped(R"(a\nb\Nc\,d\;e\\f)"), "a\nb\nc,d;e\\f");
    EXPECT_EQ(unescaped(R"(at 10\:30 \"sharp\")"), "at 10:30 \"sharp\"");
    EXPECT_EQ(unescaped(R"(C:\temp\)"), R"(C:\temp\)");
    EXPECT_EQ(unescaped(R"(\\n)"), R"(\n)");
}

TEST(Property, IsKnownByItsNameInAnyCaseAndByTheWholeOfIt)
{
    EXPECT_EQ(propertyName("DTSTART:1").name, PropertyName::DateTimeStart);
    EXPECT_EQ(propertyName("dtStart;TZID=x:1").name, PropertyName::DateTimeStart);
    EXPECT_EQ(propertyName("DTSTART :1").name, PropertyName::DateTimeStart);
    EXPECT_EQ(propertyName("DTSTARTED:1").name, PropertyName::Other);
    EXPECT_EQ(propertyName("DTSTAR").name, PropertyName::Other);
    EXPECT_EQ(propertyName("RECURRENCE-ID:1").name, PropertyName::RecurrenceId);
    EXPECT_EQ(propertyName("x-wr-timezone:Europe/Berlin").name, PropertyName::DefaultZone);
    EXPECT_EQ(propertyName("DESCRIPTION:DTSTART").name, PropertyName::Other);
}

}
