// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#define PY_SSIZE_T_CLEAN
#include <Python.h>  // the first, as it sets macros of the C library
// Which comes after it.
#include <frameobject.h>

#include "embedded_python.h"
#include "expect.h"

namespace {

constexpr std::size_t kCounters = 1 << 14;

// The fuzzer finds counters of its own kind in a section of this name.
__attribute__((section("__libfuzzer_extra_counters"), used)) std::uint8_t counters[kCounters];

/// Counts each call together with the call before it. Calls are everywhere, and lines would take twice the time.
int countCall(PyObject *, PyFrameObject *frame, int event, PyObject *) {
  static std::size_t before = 0;
  if (event != PyTrace_CALL && event != PyTrace_C_CALL) return 0;
  PyCodeObject *code = PyFrame_GetCode(frame);
  // The hash is kept in the text, and not computed again.
  const auto function = static_cast<std::size_t>(PyObject_Hash(code->co_qualname));
  Py_DECREF(code);
  const std::size_t place = function + static_cast<std::size_t>(PyFrame_GetLasti(frame));
  ++counters[(place ^ before) % kCounters];
  before = place >> 1U;
  return 0;
}

void startPython() {
  PyConfig config;
  PyConfig_InitIsolatedConfig(&config);
  config.write_bytecode = 0;
  config.use_hash_seed = 1;  // 0 below: the same counters in every run
  config.hash_seed = 0;
  PyConfig_SetString(&config, &config.program_name, L"/usr/bin/python3");
  const PyStatus status = Py_InitializeFromConfig(&config);
  PyConfig_Clear(&config);
  fuzz::expect(PyStatus_Exception(status) == 0, "Python starts");
  for (const char *path : {FUZZ_FOLDER, PYTHON_FOLDER}) {
    PyObject *folder = PyUnicode_FromString(path);
    PyList_Insert(PySys_GetObject("path"), 0, folder);
    Py_DECREF(folder);
  }
  PyObject *report = PyFile_FromFd(fuzz::reportDescriptor(), nullptr, "w", 1, nullptr, nullptr, nullptr, 0);
  PySys_SetObject("stderr", report);
  Py_DECREF(report);
}

PyObject *checked(PyObject *result) {
  if (result == nullptr) PyErr_Print();
  fuzz::expect(result != nullptr, "no exception is left over");
  return result;
}

}  // namespace

// Python keeps memory until it ends, which is not a leak.
extern "C" int __lsan_is_turned_off() { return 1; }

namespace fuzz {

PythonTarget::PythonTarget(const char *module) {
  startPython();
  PyObject *imported = checked(PyImport_ImportModule(module));
  function_ = checked(PyObject_GetAttrString(imported, "one_input"));
  Py_DECREF(imported);
  PyEval_SetProfile(countCall, nullptr);
}

std::string PythonTarget::call(const std::uint8_t *data, std::size_t size) const {
  PyObject *result = checked(PyObject_CallFunction(
      static_cast<PyObject *>(function_), "y#", reinterpret_cast<const char *>(data), static_cast<Py_ssize_t>(size)));
  const std::string text = PyUnicode_AsUTF8(result);
  Py_DECREF(result);
  return text;
}

}  // namespace fuzz
