#pragma once

// What the runtimes that stand in for closed ones share: the script they follow, the counts they
// keep, and the pictures they were given. For a library of one source file; calls come from one
// thread at a time.
//
// ORBILENS_VR_FOLDER names the folder of the file "script": lines of a key and numbers. What was
// called how often goes to the file "counts" beside it. What both families read is
//   size 64 48             pixels of an eye
//   frustumE 1 1 1 1       tangents of eye E: left, right, up, down
//   picture N              the eyes submitted next are kept as eye0-N.ppm and eye1-N.ppm
// "wrong" counts what a real runtime would refuse, "unended" the sessions that go on.

#include <GL/gl.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Numbers = std::vector<double>;

std::map<std::string, Numbers> script;
std::map<std::string, long> counts;

std::string path(const std::string &name)
{
    const char *folder = std::getenv("ORBILENS_VR_FOLDER");
    return std::string(folder ? folder : ".") + '/' + name;
}

void readScript()
{
    std::ifstream file(path("script"));
    std::string line, key;
    script.clear();
    while (std::getline(file, line)) {
        std::istringstream words(line);
        words >> key;
        for (double value; words >> value;)
            script[key].push_back(value);
    }
}

Numbers numbers(const std::string &key, const Numbers &standard)
{
    const auto found = script.find(key);
    return found != script.end() && found->second.size() == standard.size() ? found->second
                                                                            : standard;
}

long number(const std::string &key, long standard)
{
    return long(numbers(key, {double(standard)})[0]);
}

/// What a structure of the caller is made of.
template <class Struct>
char *bytes(Struct *given)
{
    return reinterpret_cast<char *>(given);
}

template <class Struct>
const char *bytes(const Struct *given)
{
    return reinterpret_cast<const char *>(given);
}

Numbers sizeOfEye()
{
    return numbers("size", {64, 48});
}

Numbers tangentsOfEye(int eye)
{
    return numbers("frustum" + std::to_string(eye), {1, 1, 1, 1});
}

template <class Value>
void put(char *target, Value value)
{
    std::memcpy(target, &value, sizeof value);
}

void replaceFile(const std::string &name, const std::string &bytes)
{
    std::ofstream(path(name + ".part"), std::ios::binary) << bytes;
    std::rename(path(name + ".part").c_str(), path(name).c_str());
}

void writeCounts()
{
    std::ostringstream text;
    for (const auto &[name, count] : counts)
        text << name << ' ' << count << '\n';
    replaceFile("counts", text.str());
}

/// Keeps an eye's picture as eyeE-N.ppm, N the script's "picture". The texture's rows come bottom
/// row first; files of this kind begin at the top.
void keepPicture(int eye, GLuint texture)
{
    GLint width = 0, height = 0;
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &height);
    std::string pixels(std::size_t(width) * std::size_t(height) * 3, '\0');
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
    glBindTexture(GL_TEXTURE_2D, 0);
    std::string file = "P6\n" + std::to_string(width) + ' ' + std::to_string(height) + "\n255\n";
    for (int row = height - 1; row >= 0; --row)
        file += pixels.substr(std::size_t(row) * std::size_t(width) * 3, std::size_t(width) * 3);
    replaceFile("eye" + std::to_string(eye) + '-' + std::to_string(number("picture", 0)) + ".ppm",
                file);
}

} // namespace
