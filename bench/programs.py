"""The programs of the contenders, each asked in the same way: which rows, what answers, how long."""
import json
import subprocess


class Cpp:
    """wq_bench, started anew for every question; Google Benchmark times."""

    def __init__(self, program, folder):
        self.command = [program, folder]
        text = subprocess.run([*self.command, "list"], check=True, capture_output=True, text=True).stdout
        self.rows = {words[0]: words[1:] for words in map(str.split, text.splitlines())}

    def answers(self, row, name):
        text = subprocess.run([*self.command, "answers", row, name], check=True, capture_output=True, text=True).stdout
        return [float(word) for word in text.split()[1:]]

    def seconds(self, row, names, least):
        """@return processor seconds of a call, by name; the contenders take turns in random order."""
        pattern = f"^{row}/({'|'.join(names)})/manual_time$"  # no special character in any name
        output = subprocess.run(
            [*self.command, "time", f"--benchmark_filter={pattern}", f"--benchmark_min_time={least}",
             "--benchmark_enable_random_interleaving=true", "--benchmark_format=json"], check=True, capture_output=True, text=True).stdout
        result = {}
        for run in json.loads(output)["benchmarks"]:
            if run["run_type"] == "iteration":
                name = run["name"][len(row) + 1:].split("/")[0]
                result[name] = run["real_time"] * 1e-6 / run["calls"]
        return result

    def forget(self):
        pass

    def end(self):
        pass


class Script:
    """peers.py or peers.R, started once and asked line by line."""

    def __init__(self, command):
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.rows = {words[0]: words[1:] for words in map(str.split, self.ask("list").split(";"))}

    def ask(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        answer = self.process.stdout.readline()
        if not answer:
            raise RuntimeError(f"{self.process.args[0]} ended at: {line}")
        return answer.strip()

    def answers(self, row, name):
        return [float(word) for word in self.ask(f"answers {row} {name}").split()]

    def seconds(self, row, names, least):
        return {name: float(self.ask(f"time {row} {name} {least}")) for name in names}

    def forget(self):
        self.ask("forget")

    def end(self):
        self.process.stdin.close()
        self.process.wait()
