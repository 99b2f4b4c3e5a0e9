// Runs a fuzz target without libFuzzer: every seed as it stands, then mutated seeds, the same ones in every run.
#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace
{

constexpr std::size_t MaxInput = 64 * 1024;
constexpr std::string_view FindingFile = "fuzz-finding";

std::string theInput;

/// Leaves the input that the target fell over in the current folder.
void keepInput()
{
    std::ofstream(FindingFile.data(), std::ios::binary) << theInput;
    std::fprintf(stderr, "The input of %zu bytes is kept in %s.\n", theInput.size(), FindingFile.data());
}

void die(int signal)
{
    keepInput();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void keepInputOnFailure()
{
    if (__sanitizer_set_death_callback) {
        __sanitizer_set_death_callback(keepInput);
        return;
    }
    for (const int signal : {SIGABRT, SIGSEGV, SIGILL, SIGTRAP, SIGFPE, SIGBUS})
        std::signal(signal, die);
}

std::vector<std::string> readSeeds(const std::filesystem::path& path)
{
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_directory(path))
        for (const auto& entry : std::filesystem::directory_iterator(path))
            files.push_back(entry.path());
    else if (std::filesystem::exists(path))
        files.push_back(path);
    std::sort(files.begin(), files.end());
    std::vector<std::string> seeds;
    for (const auto& file : files) {
        std::ifstream stream(file, std::ios::binary);
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
        switch (below(9)) {
        case 0:
            text.erase(at, 1 + below(8));
            break;
        case 1:
            text.insert(at, 1, Signs[below(Signs.size())]);
            break;
        case 2:
            if (at < text.size())
                text[at] = static_cast<char>(m_random() & 0xff);
            break;
        case 3:
            if (at < text.size())
                text[at] = Signs[below(Signs.size())];
            break;
        case 4:
            text.insert(at, piece(anySeed(), 60));
            break;
        case 5:
            text.insert(at, piece(text, 30));
            break;
        case 6:
            text.insert(at, Words[below(std::size(Words))]);
            break;
        case 7:
            text.erase(at);
            break;
        default:
            // Rare: the same piece hundreds of times, for what counts how deep something nests.
            if (const std::string part = piece(text, 12); below(20) == 0)
                for (std::size_t times = below(500); times > 0 && text.size() < MaxInput; --times)
                    text.insert(at, part);
            break;
        }
    }

    const std::vector<std::string>& m_seeds;
    std::mt19937_64 m_random{20040607};
};

void runTarget(std::string input)
{
    theInput = std::move(input);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(theInput.data()), theInput.size());
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
    keepInputOnFailure();
    for (const std::string& seed : seeds)
        runTarget(seed);
    Mutator mutator(seeds);
    const unsigned long long count = std::strtoull(argv[1], nullptr, 10);
    for (unsigned long long i = 0; i < count; ++i)
        runTarget(mutator.next());
    std::printf("%zu seeds and %llu mutations passed.\n", seeds.size(), count);
    return 0;
}
