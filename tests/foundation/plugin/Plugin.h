// A library that uses the base libraries beside the test program.
#pragma once

#include <mirel/base/Exception.h>

#if !defined(_WIN32)
#define PLUGIN_API __attribute__((visibility("default")))
#elif defined(PLUGIN_BUILD)
#define PLUGIN_API __declspec(dllexport)
#else
#define PLUGIN_API __declspec(dllimport)
#endif

namespace plugin {

// Its registered parent is in the foundation library.
class PLUGIN_API CPluginException : public mirel::base::CException {
 public:
  CPluginException(const char* file, unsigned int line, const char* message);
  ~CPluginException() override;
  const mirel::base::CClass* GetClass() const override;

  static mirel::base::CClass m_classCPluginException;
};

PLUGIN_API void Throw();

// Makes a text in the root library and returns whether this library caught what that threw.
PLUGIN_API bool CatchesOutOfMemoryOfRootLibrary();

// Asks the foundation library for a block and returns whether this library caught what that threw.
PLUGIN_API bool CatchesMemoryExceptionOfFoundation();

}  // namespace plugin
