#pragma once

#include <sstream>
#include <string>

#include "zul/kernel/attribute_bag.h"

namespace zultest {

/// An XML reader for what the tools write: one attribute a line, its value up to the line's last quote.
template <class T>
void ReadElement(const std::string& element, T& tool) {
    zul::CAttributeBag bag;
    std::istringstream lines(element);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t equals = line.find("='"), name = line.rfind(' ', equals) + 1, value = equals + 2;
        if (equals == std::string::npos) continue;
        bag.SetAttribute(line.substr(name, equals - name).c_str(),
                         line.substr(value, line.rfind('\'') - value).c_str());
    }
    tool.ImportParametersEx(&bag);
}

}  // namespace zultest
