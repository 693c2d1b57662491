// What a sample application is told to be.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace kestrin::sample {

/// By name, without the dashes. One that has no value is there, and empty.
class Options {
  public:
    bool has(const std::string &name) const { return m_values.contains(name); }
    std::string value(const std::string &name, const std::string &otherwise = {}) const {
        return has(name) ? m_values.at(name) : otherwise;
    }
    void set(const std::string &name, const std::string &value) { m_values[name] = value; }

  private:
    std::map<std::string, std::string> m_values;
};

struct Instructions {
    Options application;
    std::vector<Options> windows;
};

/// Ends the process, with a list of the options, when one of them is not known.
Instructions parseArguments(const std::vector<std::string> &arguments);

} // namespace kestrin::sample
