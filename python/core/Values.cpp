/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of features, texts and records as Python objects, and back
 */
#include "Values.h"

#include <string>
#include <variant>

namespace python {

namespace {

py::object Number(const std::int64_t& value) {
    return py::int_(value);
}
py::object Number(const double& value) {
    return py::float_(value);
}
py::object Number(const bool& value) {
    return py::bool_(value);
}
py::object Number(const std::string& value) {
    return ToPython(value);
}
py::object Number(const Vanto::FeatureBytes& value) {
    return py::bytes(reinterpret_cast<const char*>(value.data()), value.size());
}

template <class Items>
py::list List(const Items& items) {
    py::list list;
    for (const auto& item : items)
        list.append(ToPython(item));
    return list;
}

[[noreturn]] void ThrowWrongType(const py::handle& object) {
    throw py::type_error(std::string("a feature takes a number, a bool, a text or bytes, not ") +
                         Py_TYPE(object.ptr())->tp_name);
}

std::int64_t ToInteger(const py::handle& object) {
    const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(object.ptr()));
    if (!number)
        throw py::error_already_set();
    int overflow = 0;
    const long long value = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
    if (overflow != 0) {
        PyErr_SetString(PyExc_OverflowError, "a feature takes integers of 64 bits");
        throw py::error_already_set();
    }
    return value;
}

bool HasMethod(const py::handle& object, const char* name) {
    return PyObject_HasAttrString(reinterpret_cast<PyObject*>(Py_TYPE(object.ptr())), name) != 0;
}

// numpy's bool is no bool.
bool IsBool(const py::handle& object) {
    const std::string type = Py_TYPE(object.ptr())->tp_name;
    return PyBool_Check(object.ptr()) || type == "numpy.bool_" || type == "numpy.bool";
}

}  // namespace

/// Bytes that are no UTF-8 come through, as they do in file names.
py::str ToPython(const std::string& text) {
    PyObject* const made = PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
    if (made == nullptr)
        throw py::error_already_set();
    return py::reinterpret_steal<py::str>(made);
}

std::string ToText(const py::str& text) {
    const auto bytes =
        py::reinterpret_steal<py::bytes>(PyUnicode_AsEncodedString(text.ptr(), "utf-8", "surrogateescape"));
    if (!bytes)
        throw py::error_already_set();
    return std::string(bytes);
}

Vanto::FeatureBytes ToBytes(const py::handle& object) {
    Py_buffer view{};
    if (PyObject_GetBuffer(object.ptr(), &view, PyBUF_SIMPLE) != 0)
        throw py::error_already_set();
    const auto* const first = static_cast<const std::uint8_t*>(view.buf);
    Vanto::FeatureBytes bytes(first, first + view.len);
    PyBuffer_Release(&view);
    return bytes;
}

py::object ToPython(const Vanto::FeatureValue& value) {
    return std::visit([](const auto& known) { return Number(known); }, value);
}

/// (least, greatest, step or None, values)
py::object ToPython(const std::optional<Vanto::FeatureRange>& range) {
    if (!range)
        return py::none();
    const py::object step = range->step ? ToPython(*range->step) : py::none();
    return py::make_tuple(ToPython(range->least), ToPython(range->most), step, List(range->values));
}

/// (name, value, display name, documentation, available) of each
py::list ToPython(const std::vector<Vanto::FeatureEntry>& entries) {
    py::list list;
    for (const Vanto::FeatureEntry& entry : entries)
        list.append(py::make_tuple(ToPython(entry.name), entry.value, ToPython(entry.displayName),
                                   ToPython(entry.description), entry.isAvailable));
    return list;
}

/// (feature, selectors, reason, line) of each
py::list ToPython(const std::vector<Vanto::SettingFault>& faults) {
    py::list list;
    for (const Vanto::SettingFault& fault : faults)
        list.append(py::module_::import("vanto._records")
                        .attr("SettingFault")(ToPython(fault.feature), ToPython(fault.selectors),
                                              ToPython(fault.reason), fault.line));
    return list;
}

/// (name, serial number, port, full name, vendor, model, {name: value} of all properties)
py::tuple ToPython(const Vanto::CameraRecord& record) {
    py::dict properties;
    for (const auto& [name, value] : record.properties)
        properties[ToPython(name)] = ToPython(value);
    return py::make_tuple(ToPython(record.name), ToPython(record.serialNumber), ToPython(record.port),
                          ToPython(record.fullName), ToPython(record.vendor), ToPython(record.model), properties);
}

/**
 * \brief What a Python object says a feature's value is
 * \throw py::type_error It is nothing that features have
 */
Vanto::FeatureValue ToValue(const py::handle& object) {
    if (IsBool(object))
        return py::cast<bool>(py::bool_(py::reinterpret_borrow<py::object>(object)));
    if (py::isinstance<py::str>(object))
        return ToText(py::reinterpret_borrow<py::str>(object));
    if (PyFloat_Check(object.ptr()))
        return PyFloat_AsDouble(object.ptr());
    if (PyIndex_Check(object.ptr()) && !PyObject_CheckBuffer(object.ptr()))
        return ToInteger(object);
    // numpy's numbers have buffers, too; arrays have more of them than one number.
    if (PyObject_CheckBuffer(object.ptr()) && !HasMethod(object, "__float__"))
        return ToBytes(object);
    if (HasMethod(object, "__index__") && !HasMethod(object, "__len__"))
        return ToInteger(object);
    if (HasMethod(object, "__float__") && !HasMethod(object, "__len__"))
        return py::cast<double>(py::float_(py::reinterpret_borrow<py::object>(object)));
    ThrowWrongType(object);
}

}  // namespace python
