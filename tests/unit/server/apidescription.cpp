// SPDX-License-Identifier: MIT
#include "apidescription.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <stdexcept>

namespace
{

const std::set<std::string> methods{"get", "put", "post", "delete", "patch", "head", "options"};

class Reader
{
public:
    void take(const std::string& line)
    {
        const auto indent = line.find_first_not_of(' ');
        const auto text = line.substr(indent);
        const auto key = text.substr(0, text.find(':'));
        switch (indent) {
        case 2:
            takePath(key);
            break;
        case 4:
            takeMethod(key);
            break;
        case 6:
            m_isInResponses = m_isInMethod && key == "responses";
            if (m_isInMethod && text == "security: []")
                operations.back().wantsToken = false;
            break;
        case 8:
            if (m_isInResponses)
                takeStatus(key);
            break;
        default:
            if (indent < 8)
                throw std::runtime_error("not in the form that is read: " + line);
        }
    }

    std::vector<Operation> operations;

private:
    void takePath(const std::string& key)
    {
        if (!key.starts_with('/'))
            throw std::runtime_error("no path: " + key);
        m_path = key;
        m_isInMethod = false;
    }

    void takeMethod(const std::string& key)
    {
        m_isInResponses = false;
        m_isInMethod = methods.contains(key);
        if (!m_isInMethod) {
            if (key != "parameters" && !key.starts_with("- "))
                throw std::runtime_error("neither a method nor parameters: " + key);
            return;
        }
        Operation operation;
        operation.path = m_path;
        std::transform(key.begin(), key.end(), std::back_inserter(operation.method),
                       [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
        operations.push_back(operation);
    }

    void takeStatus(const std::string& key)
    {
        const bool isStatus = key.size() == 5 && key.front() == '"' && key.back() == '"';
        if (!isStatus)
            throw std::runtime_error("no status: " + key);
        operations.back().statuses.insert(static_cast<unsigned>(std::stoul(key.substr(1, 3))));
    }

    std::string m_path;
    bool m_isInMethod = false;
    bool m_isInResponses = false;
};

} // namespace

std::vector<Operation> ReadOperations(const std::string& file, bool areForWorkers)
{
    std::ifstream stream(file);
    if (!stream)
        throw std::runtime_error("cannot read " + file);
    Reader reader;
    bool isInPaths = false;
    for (std::string line; std::getline(stream, line);) {
        if (line.find_first_not_of(' ') == std::string::npos)
            continue;
        if (!line.starts_with(' '))
            isInPaths = line == "paths:";
        else if (isInPaths)
            reader.take(line);
    }
    std::erase_if(reader.operations, [&](const Operation& operation) {
        return operation.path.starts_with("/workers/") != areForWorkers;
    });
    return reader.operations;
}
