// wqstat random: numbers from the library's generator.
#include "command.h"

#include "command_line/arguments.h"
#include "command_line/failure.h"
#include "command_line/options.h"
#include "command_line/progress.h"

#include <CLI/CLI.hpp>

#include <wq_stat/random.h>

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <limits>
#include <string>
#include <vector>

namespace wqstat {

namespace {

constexpr std::size_t largestInteger = std::numeric_limits<unsigned int>::max();

class RandomNumbers final : public Command {
    void declare(CLI::App& app) override
    {
        CLI::Option* const integersOption = addCount(app, "--integers", integers, 0, anyCount, "print this many integers");
        CLI::Option* const realsOption = addCount(app, "--reals", reals, 0, anyCount, "print this many reals, 0 <= value < 1");
        const auto store = [this](const std::string& text) { setWeights(text); };
        CLI::Option* const weightsOption =
            app.add_option_function<std::string>("--weights", store, "print positions in this list of probabilities, counted from 0")
                ->type_name("W1,W2,...");
        integersOption->excludes(realsOption)->excludes(weightsOption);
        realsOption->excludes(weightsOption);
        kinds = {integersOption, realsOption, weightsOption};

        CLI::Option* const maxOption =
            addCount(app, "--max", high, 0, largestInteger, "with --integers: the largest, 4294967295 unless given; the smallest is 0");
        CLI::Option* const lowOption = addCount(app, "--low", low, 0, largestInteger, "with --integers and --high: the smallest");
        CLI::Option* const highOption = addCount(app, "--high", high, 0, largestInteger, "with --integers and --low: the largest");
        CLI::Option* const countOption =
            addCount(app, "--count", count, 0, anyCount, "with --weights: how many positions to draw, 1 unless given");
        addCount(app, "--seed", seed, 0, largestInteger, "where the generator starts, 0 unless given");
        for (CLI::Option* const option : {maxOption, lowOption, highOption}) option->needs(integersOption);
        maxOption->excludes(lowOption);  // and with it --high: of several, which is named would depend on where in memory they stand
        lowOption->needs(highOption);
        highOption->needs(lowOption);
        countOption->needs(weightsOption);
        app.footer("The generator is a Mersenne Twister that starts with the seed in every run: the same command prints the same numbers.\n"
                   "Probabilities are neither checked for their sum nor scaled; a draw beyond their sum prints the number of weights.");
    }

    ExitStatus run() override
    {
        if (std::none_of(kinds.begin(), kinds.end(), [](const CLI::Option* kind) { return kind->count() > 0; }))
            throw WrongUsage("one of --integers, --reals and --weights is required");
        if (low > high) throw WrongUsage("--low: " + std::to_string(low) + " is more than --high " + std::to_string(high));
        wq_lib::RandomCpp11 generator;
        generator.seed(static_cast<unsigned int>(seed));
        print(integers,
              [&] { return std::to_string(generator.getInteger(static_cast<unsigned int>(low), static_cast<unsigned int>(high))); });
        print(reals, [&] { return shortest(generator.getReal()); });
        if (!weights.empty()) print(count, [&] { return std::to_string(generator.getInteger(weights)); });
        return done;
    }

    void setWeights(const std::string& text)
    {
        for (const std::string& part : commaSeparated(text)) {
            const double weight = readArgument("--weights", [&] { return realArgument(part); });
            if (!(weight >= 0.0 && weight <= 1.0)) throw WrongUsage("--weights: " + inQuotes(part) + " is no probability");
            weights.push_back(weight);
        }
    }

    template <typename Draw>
    static void print(std::size_t n, Draw draw)
    {
        constexpr std::size_t step = 1 << 12;
        if (!printsOnTerminal()) progress().show("drawing", n);
        for (std::size_t i = 0; i < n && std::cout; ++i) {
            std::cout << draw() << '\n';
            if ((i + 1) % step == 0) progress().advance(step);
        }
    }

    std::vector<CLI::Option*> kinds;
    std::size_t integers = 0;
    std::size_t reals = 0;
    std::vector<double> weights;
    std::size_t count = 1;
    std::size_t seed = 0;
    std::size_t low = 0;
    std::size_t high = largestInteger;
};

}  // namespace

CommandEntry randomCommand()
{
    return {"random", "random numbers, the same in every run with the same seed", "wqstat random --integers 6 --low 1 --high 49",
            make<RandomNumbers>};
}

}  // namespace wqstat
