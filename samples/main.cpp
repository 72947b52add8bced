// SPDX-License-Identifier: MIT
#include "samples/samplewriter.h"

#include <exception>
#include <filesystem>
#include <iostream>

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3) {
        std::cerr << "usage: make-samples SOURCES FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = arguments[2];
    if (std::filesystem::exists(folder)) {
        std::cerr << folder << " exists already\n";
        return 1;
    }
    // Whoever finds the folder finds all of it.
    const std::filesystem::path half = folder.string() + ".half";
    try {
        std::filesystem::remove_all(half);
        samples::WriteSamples(arguments[1], half, std::cout);
        std::filesystem::rename(half, folder);
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "make-samples: " << exception.what() << '\n';
        return 1;
    }
}
