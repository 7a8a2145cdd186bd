#include "jvmlauncher/Access.h"

#include "fakes/WideText.h"

using torvan::jvmlauncher::CArgumentList;
using torvan::jvmlauncher::CJavaVmOption;
using torvan::jvmlauncher::CJavaVmOptions;

namespace {

template <typename Class>
using Render = mirel::base::CUnicodeString (Class::*)() const;
template <typename Class>
using List = unsigned int (Class::*)(CArgumentList&) const;

// An explicit instantiation may name a private member. The function that it defines returns that member.
Render<CArgumentList> Renderer(const CArgumentList&);
Render<CJavaVmOption> Renderer(const CJavaVmOption&);
Render<CJavaVmOptions> Renderer(const CJavaVmOptions&);
List<CJavaVmOption> Lister(const CJavaVmOption&);
List<CJavaVmOptions> Lister(const CJavaVmOptions&);

template <typename Class, Render<Class> Member>
struct OpenRenderer {
  friend Render<Class> Renderer(const Class&) { return Member; }
};
template <typename Class, List<Class> Member>
struct OpenLister {
  friend List<Class> Lister(const Class&) { return Member; }
};

template struct OpenRenderer<CArgumentList, &CArgumentList::RenderCommandLine>;
template struct OpenRenderer<CJavaVmOption, &CJavaVmOption::RenderCommandLine>;
template struct OpenRenderer<CJavaVmOptions, &CJavaVmOptions::RenderCommandLine>;
template struct OpenLister<CJavaVmOption, &CJavaVmOption::ToArgumentList>;
template struct OpenLister<CJavaVmOptions, &CJavaVmOptions::ToArgumentList>;

template <typename Class>
std::string Line(const Class& object) {
  return tests::Narrow((object.*Renderer(object))());
}

}  // namespace

namespace tests {

std::string LineOf(const CJavaVmOption& option) { return Line(option); }
std::string LineOf(const CJavaVmOptions& options) { return Line(options); }
std::string LineOf(const CArgumentList& arguments) { return Line(arguments); }

unsigned int AppendTo(CArgumentList& list, const CJavaVmOption& option) { return (option.*Lister(option))(list); }
unsigned int AppendTo(CArgumentList& list, const CJavaVmOptions& options) { return (options.*Lister(options))(list); }

std::vector<std::string> ArgumentsOf(const CArgumentList& list) {
  std::vector<std::string> texts;
  for (unsigned int i = 0; i < list.GetArgumentCount(); ++i) texts.push_back(Narrow(list.GetArgumentAt(i)));
  return texts;
}

}  // namespace tests
