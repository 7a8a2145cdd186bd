// A native program that searches text with a Java library: Lucene, whose core jar is the first argument.
//   java_search lucene-core.jar
// It indexes 20,000 short documents, in memory, and finds the best of them for a few words.
#include <torvan/Java.h>
#include <cstdio>

namespace java = torvan::java;

// clang-format off
struct Analyzer    { static constexpr char JavaName[] = "org/apache/lucene/analysis/Analyzer"; };
struct Standard    { static constexpr char JavaName[] = "org/apache/lucene/analysis/standard/StandardAnalyzer"; using Super = Analyzer; };
struct Directory   { static constexpr char JavaName[] = "org/apache/lucene/store/Directory"; };
struct Memory      { static constexpr char JavaName[] = "org/apache/lucene/store/ByteBuffersDirectory"; using Super = Directory; };
struct Config      { static constexpr char JavaName[] = "org/apache/lucene/index/IndexWriterConfig"; };
struct Store       { static constexpr char JavaName[] = "org/apache/lucene/document/Field$Store"; };
struct Field       { static constexpr char JavaName[] = "org/apache/lucene/document/Field"; };
struct TextField   { static constexpr char JavaName[] = "org/apache/lucene/document/TextField"; using Super = Field; };
struct Document    { static constexpr char JavaName[] = "org/apache/lucene/document/Document"; };
struct IndexWriter { static constexpr char JavaName[] = "org/apache/lucene/index/IndexWriter"; };
struct Reader      { static constexpr char JavaName[] = "org/apache/lucene/index/IndexReader"; };
struct DirectoryReader { static constexpr char JavaName[] = "org/apache/lucene/index/DirectoryReader"; using Super = Reader; };
struct Searcher    { static constexpr char JavaName[] = "org/apache/lucene/search/IndexSearcher"; };
struct Query       { static constexpr char JavaName[] = "org/apache/lucene/search/Query"; };
struct PhraseQuery { static constexpr char JavaName[] = "org/apache/lucene/search/PhraseQuery"; using Super = Query; };
struct TopDocs     { static constexpr char JavaName[] = "org/apache/lucene/search/TopDocs"; };
struct ScoreDoc    { static constexpr char JavaName[] = "org/apache/lucene/search/ScoreDoc"; };

constexpr java::Constructor<Memory()> NewMemory;
constexpr java::Constructor<Standard()> NewAnalyzer;
constexpr java::Constructor<Config(java::Ref<Analyzer>)> NewConfig;
constexpr java::Constructor<IndexWriter(java::Ref<Directory>, java::Ref<Config>)> NewWriter;
constexpr java::Constructor<Document()> NewDocument;
constexpr java::Constructor<TextField(std::string_view, std::string_view, java::Ref<Store>)> NewField;
constexpr java::Constructor<Searcher(java::Ref<Reader>)> NewSearcher;
constexpr java::Constructor<PhraseQuery(jint, std::string_view, std::vector<std::string>)> NewPhrase;
constexpr java::StaticField<java::Local<Store>> StoreYes{"org/apache/lucene/document/Field$Store", "YES"};
constexpr java::Method<Document, void(java::Ref<Field>)> AddField{"add", "(Lorg/apache/lucene/index/IndexableField;)V"};
constexpr java::Method<IndexWriter, jlong(java::Ref<Document>)> AddDocument{"addDocument", "(Ljava/lang/Iterable;)J"};
constexpr java::Method<IndexWriter, void()> CloseWriter{"close"};
constexpr java::StaticMethod<java::Local<DirectoryReader>(java::Ref<Directory>)> OpenReader{"org/apache/lucene/index/DirectoryReader", "open"};
constexpr java::Method<Reader, jint()> DocumentCount{"numDocs"};
constexpr java::Method<Searcher, java::Local<TopDocs>(java::Ref<Query>, jint)> Search{"search"};
constexpr java::Method<Searcher, jint(java::Ref<Query>)> Count{"count"};
constexpr java::Method<Searcher, java::Local<Document>(jint)> Load{"doc"};
constexpr java::Method<Document, std::string(std::string_view)> Get{"get"};
constexpr java::Field<TopDocs, std::vector<java::Local<ScoreDoc>>> ScoreDocs{"scoreDocs"};
constexpr java::Field<ScoreDoc, jint> Number{"doc"};
constexpr java::Field<ScoreDoc, float> Score{"score"};
// clang-format on

struct Hit {
  int document;
  float score;
  std::string text;
};

// The best documents that have the words near each other, at most `slop` moves apart.
static std::vector<Hit> Find(const java::Local<Searcher>& searcher, const java::Local<PhraseQuery>& query, int most) {
  std::vector<Hit> hits;
  for (const auto& found : ScoreDocs.Get(Search(searcher, query, most))) {
    const jint number = Number.Get(found);
    hits.push_back({static_cast<int>(number), Score.Get(found), Get(Load(searcher, number), "text")});
  }
  return hits;
}

int main(int argc, char** argv) try {
  const char* const jar = argc > 1 ? argv[1] : "lucene-core.jar";
  const java::Vm vm = java::StartVm(java::VmSettings().ClassPath({jar}).MaximumHeap("256m"));

  const char* const subjects[] = {"the river", "a bridge", "the old town", "Z\xC3\xBCrich", "a steam engine"};
  const char* const places[] = {"in the north", "by the sea", "near the mountains"};
  const auto directory = NewMemory();
  const auto writer = NewWriter(directory, NewConfig(NewAnalyzer()));
  const auto store = StoreYes.Get();
  for (int i = 0; i < 20000; ++i) {
    const auto document = NewDocument();
    const std::string text = std::string("Page ") + std::to_string(i) + " tells of " + subjects[i % 5] + " and " +
                             subjects[i % 3] + " " + places[i % 7 % 3];
    AddField(document, NewField("text", text, store));
    AddDocument(writer, document);
  }
  CloseWriter(writer);

  const auto reader = OpenReader(directory);
  const auto searcher = NewSearcher(reader);
  std::printf("%d documents\n", static_cast<int>(DocumentCount(reader)));
  const std::vector<std::vector<std::string>> searches = {
      {"page", "12345"}, {"z\xC3\xBCrich", "river"}, {"no", "such"}};
  for (const std::vector<std::string>& words : searches) {
    const auto query = NewPhrase(jint{3}, "text", words);
    std::printf("%s %s: %d\n", words[0].c_str(), words[1].c_str(), static_cast<int>(Count(searcher, query)));
    for (const Hit& hit : Find(searcher, query, 2)) {
      std::printf("  %5d  %.2f  %s\n", hit.document, static_cast<double>(hit.score), hit.text.c_str());
    }
  }
  return 0;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "%s\n", failure.what());
  return 1;
}
