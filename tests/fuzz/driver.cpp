// Runs a fuzz target without libFuzzer: first every seed unchanged, then mutated seeds, the same ones in every run.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace
{

constexpr std::size_t MaxInput = 64 * 1024;

std::string findingFile; // a separate one for each program, since several run at once

std::vector<std::string> readSeeds(const std::filesystem::path& path)
{
    std::set<std::filesystem::path> files{path};
    if (std::filesystem::is_directory(path))
        files = {std::filesystem::directory_iterator(path), {}};
    std::vector<std::string> seeds;
    for (const auto& file : files) {
        std::ifstream stream(file, std::ios::binary);
        if (stream)
            seeds.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    }
    return seeds;
}

class Mutator
{
public:
    explicit Mutator(const std::vector<std::string>& seeds) : m_seeds(seeds) {}

    std::string next()
    {
        std::string text = anySeed();
        for (std::size_t steps = 1 + below(6); steps > 0; --steps)
            change(text);
        text.resize(std::min(text.size(), MaxInput));
        return text;
    }

private:
    // Not std::uniform_int_distribution: its sequence differs between libraries.
    std::size_t below(std::size_t end) { return end == 0 ? 0 : static_cast<std::size_t>(m_random() % end); }
    const std::string& anySeed() { return m_seeds[below(m_seeds.size())]; }

    std::string piece(const std::string& text, std::size_t longest)
    {
        return text.substr(below(text.size() + 1), 1 + below(longest));
    }

    void change(std::string& text)
    {
        static constexpr std::string_view Signs = "\"'#{}()[]\\=<>,.;-+*/&!? \n\t09aZ_";
        static constexpr std::string_view Words[] = {
            "99999999999999999999", "-1",   "1e308",       "0.0000001", "\xff", "\xc3\xa9",
            "\xf0\x9f\x8f\x95",     "NULL", "#2/30/2004#",
        };
        const std::size_t at = below(text.size() + 1);
        const std::size_t way = below(9);
        if (way == 0)
            text.erase(at, 1 + below(8));
        else if (way == 1)
            text.insert(at, 1, Signs[below(Signs.size())]);
        else if (way < 4 && at < text.size())
            text[at] = way == 2 ? static_cast<char>(m_random() & 0xff) : Signs[below(Signs.size())];
        else if (way == 4)
            text.insert(at, piece(anySeed(), 60));
        else if (way == 5)
            text.insert(at, piece(text, 30));
        else if (way == 6)
            text.insert(at, Words[below(std::size(Words))]);
        else if (way == 7)
            text.erase(at);
        else if (const std::string part = piece(text, 12); below(20) == 0)
            // Rarely: the same piece hundreds of times, for whatever counts nesting depth.
            for (std::size_t times = below(500); times > 0 && text.size() < MaxInput; --times)
                text.insert(at, part);
    }

    const std::vector<std::string>& m_seeds;
    std::mt19937_64 m_random{20040607};
};

// Runs the target on an input that is in the current folder meanwhile, so that an input that makes it crash is left
// there.
void runTarget(const std::string& input)
{
    std::filesystem::remove(findingFile); // an overwritten file would be flushed at once
    std::ofstream(findingFile, std::ios::binary) << input;
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s MUTATIONS SEED-FILE-OR-FOLDER\n", argv[0]);
        return 2;
    }
    const std::vector<std::string> seeds = readSeeds(argv[2]);
    if (seeds.empty()) {
        std::fprintf(stderr, "There are no seeds in %s.\n", argv[2]);
        return 2;
    }
    findingFile = std::filesystem::path(argv[0]).stem().string() + "-finding";
    for (const std::string& seed : seeds)
        runTarget(seed);
    Mutator mutator(seeds);
    const unsigned long long count = std::strtoull(argv[1], nullptr, 10);
    for (unsigned long long i = 0; i < count; ++i)
        runTarget(mutator.next());
    std::filesystem::remove(findingFile);
    std::printf("%zu seeds and %llu mutations passed.\n", seeds.size(), count);
    return 0;
}
