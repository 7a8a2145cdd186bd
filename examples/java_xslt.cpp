// A native program that transforms XML with Saxon, whose jar is the first argument: what the stylesheet includes comes
// from C++, and so do one of its functions and the place where errors go.
//   java_xslt Saxon-HE.jar
#include <torvan/Java.h>
#include <cstdio>
#include <cstring>
#include <map>
#include <stdexcept>
#include <vector>

namespace java = torvan::java;
using java::Local;
using java::Ref;

// clang-format off
struct Source { static constexpr char JavaName[] = "javax/xml/transform/Source"; };
struct StreamSource { static constexpr char JavaName[] = "javax/xml/transform/stream/StreamSource"; using Super = Source; };
struct Result { static constexpr char JavaName[] = "javax/xml/transform/Result"; };
struct StreamResult { static constexpr char JavaName[] = "javax/xml/transform/stream/StreamResult"; using Super = Result; };
struct Reader { static constexpr char JavaName[] = "java/io/Reader"; };
struct StringReader { static constexpr char JavaName[] = "java/io/StringReader"; using Super = Reader; };
struct Writer { static constexpr char JavaName[] = "java/io/Writer"; };
struct StringWriter { static constexpr char JavaName[] = "java/io/StringWriter"; using Super = Writer; };
struct Resolver { static constexpr char JavaName[] = "javax/xml/transform/URIResolver"; };
struct Listener { static constexpr char JavaName[] = "javax/xml/transform/ErrorListener"; };
struct Transformer { static constexpr char JavaName[] = "javax/xml/transform/Transformer"; };
struct TransformerError { static constexpr char JavaName[] = "javax/xml/transform/TransformerException"; };
struct Configuration { static constexpr char JavaName[] = "net/sf/saxon/Configuration"; };
struct Factory { static constexpr char JavaName[] = "net/sf/saxon/TransformerFactoryImpl"; };
struct Processor { static constexpr char JavaName[] = "net/sf/saxon/s9api/Processor"; };
struct Extension { static constexpr char JavaName[] = "net/sf/saxon/s9api/ExtensionFunction"; };
struct Name { static constexpr char JavaName[] = "net/sf/saxon/s9api/QName"; };
struct Type { static constexpr char JavaName[] = "net/sf/saxon/s9api/SequenceType"; };
struct ItemType { static constexpr char JavaName[] = "net/sf/saxon/s9api/ItemType"; };
struct Occurrence { static constexpr char JavaName[] = "net/sf/saxon/s9api/OccurrenceIndicator"; };
struct Value { static constexpr char JavaName[] = "net/sf/saxon/s9api/XdmValue"; };
struct AtomicValue { static constexpr char JavaName[] = "net/sf/saxon/s9api/XdmAtomicValue"; using Super = Value; };

constexpr java::Constructor<StringReader(std::string_view)> NewReader;
constexpr java::Constructor<StreamSource(Ref<Reader>)> NewSource;
constexpr java::Constructor<StringWriter()> NewWriter;
constexpr java::Constructor<StreamResult(Ref<Writer>)> NewResult;
constexpr java::Method<StringWriter, std::string()> Written{"toString"};
constexpr java::Constructor<Factory()> NewFactory;
constexpr java::Method<Factory, Local<Configuration>()> GetConfiguration{"getConfiguration"};
constexpr java::Method<Factory, void(Ref<Resolver>)> SetResolver{"setURIResolver"};
constexpr java::Method<Factory, void(Ref<Listener>)> SetListener{"setErrorListener"};
constexpr java::Method<Factory, Local<Transformer>(Ref<Source>)> NewTransformer{"newTransformer"};
constexpr java::Method<Transformer, void(Ref<Source>, Ref<Result>)> Transform{"transform"};
constexpr java::Method<TransformerError, std::string()> MessageOf{"getMessage"};
constexpr java::Constructor<Processor(Ref<Configuration>)> NewProcessor;
constexpr java::Method<Processor, void(Ref<Extension>)> Register{"registerExtensionFunction"};
constexpr java::Constructor<Name(std::string_view, std::string_view)> NewName;
constexpr java::StaticField<Local<ItemType>> Text{"net/sf/saxon/s9api/ItemType", "STRING"};
constexpr java::StaticField<Local<Occurrence>> One{"net/sf/saxon/s9api/OccurrenceIndicator", "ONE"};
constexpr java::StaticMethod<Local<Type>(Ref<ItemType>, Ref<Occurrence>)> MakeType{"net/sf/saxon/s9api/SequenceType", "makeSequenceType"};
constexpr java::Constructor<AtomicValue(std::string_view)> NewText;
// clang-format on

static const std::map<std::string, std::string> Parts = {
    {"parts/greeting.xsl", R"xsl(<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
         <xsl:template match="person">Hello <xsl:apply-templates/>!</xsl:template></xsl:stylesheet>)xsl"}};
static const char Stylesheet[] = R"xsl(<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
       xmlns:host="urn:host" exclude-result-prefixes="host"><xsl:output method="text"/>
     <xsl:include href="parts/greeting.xsl"/>
     <xsl:template match="text()"><xsl:value-of select="host:initials(.)"/></xsl:template></xsl:stylesheet>)xsl";

// A text without its small letters: what the stylesheet calls as host:initials.
static Local<Extension> Initials() {
  const auto type = [] { return MakeType(Text.Get(), One.Get()); };
  return java::Implement<Extension>()
      .On("getName", [] { return NewName("urn:host", "initials"); })
      .On("getResultType", type)
      .On("getArgumentTypes",
          [type] {
            std::vector<Local<Type>> types;
            types.push_back(type());
            return types;
          })
      .On("call",
          [](const std::vector<Local<Value>>& arguments) {
            std::string initials;
            for (const char c : java::Call<std::string>(arguments.at(0), "toString")) {
              if (c < 'a' || c > 'z') initials += c;
            }
            return NewText(initials);
          })
      .New();
}

static std::string Transformed(const Local<Factory>& factory, std::string_view stylesheet, std::string_view text) {
  const auto writer = NewWriter();
  Transform(NewTransformer(factory, NewSource(NewReader(stylesheet))), NewSource(NewReader(text)), NewResult(writer));
  return Written(writer);
}

int main(int argc, char** argv) try {
  const java::Vm vm = java::StartVm(java::VmSettings().ClassPath({argc > 1 ? argv[1] : "Saxon-HE.jar"}));
  const auto factory = NewFactory();
  Register(NewProcessor(GetConfiguration(factory)), Initials());
  // A lambda expression is an object of an interface with one method.
  SetResolver(factory, [](const std::string& name, const std::string&) {
    const auto part = Parts.find(name);
    if (part == Parts.end()) throw std::runtime_error("the host has no " + name);
    return NewSource(NewReader(part->second));
  });
  int errors = 0;
  const auto count = [&errors](Ref<TransformerError> error) {
    std::printf("error %d: %s\n", ++errors, MessageOf(error).c_str());
  };
  SetListener(factory, java::Implement<Listener>().On("warning", count).On("error", count).On("fatalError", count));

  std::printf("%s\n", Transformed(factory, Stylesheet, "<person>Ada Byron Lovelace</person>").c_str());
  for (const auto& [right, wrong] : {std::pair("parts/greeting", "no/such"), std::pair("initials(.)", "missing()")}) {
    std::string stylesheet = Stylesheet;
    stylesheet.replace(stylesheet.find(right), std::strlen(right), wrong);
    try {
      Transformed(factory, stylesheet, "<person/>");
    } catch (const java::Error& error) {
      std::printf("%s\n", error.what());
    }
  }
  return 0;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "%s\n", failure.what());
  return 1;
}
