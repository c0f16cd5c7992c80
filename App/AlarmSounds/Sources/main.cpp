// tinkra-sounds DIRECTORY: writes the six alarm sounds; runs while building.

#include "AlarmSounds.h"
#include "WaveFile.h"

#include <cstdio>
#include <fstream>
#include <string>

int main(int argc, char** argv)
{
    using namespace Tinkra::AlarmSounds;

    if (argc != 2) {
        std::fputs("usage: tinkra-sounds DIRECTORY\n", stderr);
        return 2;
    }
    for (const auto name : kNames) {
        const auto path = std::string{argv[1]} + "/" + std::string{name} + ".wav";
        std::ofstream file(path, std::ios::binary);
        file << waveFile(samplesOf(name));
        if (!file.flush()) {
            std::fprintf(stderr, "tinkra-sounds: cannot write %s\n", path.c_str());
            return 1;
        }
    }
    return 0;
}
