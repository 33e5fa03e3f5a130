"""Tests kvr-batch: its parts, the whole program on this machine, and workers that die over TCP.

KVR_BATCH is the program, KVR_TOOL kvr, KVR_EXAMPLES the folder of examples, and KVR_SANITIZED set where kvr has no
limit of memory that it could work in.
"""

import contextlib
import io
import json
import os
import pathlib
import select
import signal
import sqlite3
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "python"))

from kvr_batch import cli, commands, inputs, launcher, report, work  # noqa: E402
from kvr_batch.child import Ended, Limits, run_child  # noqa: E402
from kvr_batch.store import Entry, Store  # noqa: E402
from kvr_batch.work import Job, Result  # noqa: E402

FAKE = str(pathlib.Path(__file__).with_name("fake_kvr.py"))
KVR = os.environ["KVR_TOOL"]
BATCH = os.environ["KVR_BATCH"]
EXAMPLES = pathlib.Path(os.environ["KVR_EXAMPLES"])
LIMITS = Limits(60, None)
# What no test should need, in seconds.
LONGEST = 200


def ends(process):
    """Waits for the end of a process that nobody lets go on; false when it does."""
    try:
        handle = os.pidfd_open(int(process))
    except ProcessLookupError:
        return True
    try:
        return bool(select.select([handle], [], [], LONGEST)[0])
    finally:
        os.close(handle)


class Folder(unittest.TestCase):
    """Each test has a folder of its own, which is the folder for temporary files of what it runs."""

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)
        self.temporary = self.folder / "tmp"
        self.temporary.mkdir()
        self.environment = {**os.environ, "TMPDIR": str(self.temporary), "PYTHONDONTWRITEBYTECODE": "1"}

    def scene(self, name, word):
        path = self.folder / "scenes" / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(f"<Scene> {word} </Scene>", encoding="utf-8")
        return path

    def batch(self, *words, kvr=FAKE, **environment):
        """Runs the program, and answers its exit status and what it printed."""
        results = ["--results", self.folder / "results.sqlite", "--kvr", kvr]
        done = subprocess.run([BATCH, *map(str, [words[0], *results, *words[1:]])], capture_output=True, check=False,
                              timeout=LONGEST, env=self.environment | environment, text=True)
        return done.returncode, done.stdout, done.stderr

    def rows(self, columns="input, outcome, message"):
        with contextlib.closing(sqlite3.connect(self.folder / "results.sqlite")) as base:
            return list(base.execute(f"SELECT {columns} FROM results ORDER BY input"))


class Children(Folder):
    def run_python(self, source, limits=LIMITS):
        return run_child(["/usr/bin/python3", "-c", source], limits)

    def test_what_a_child_prints_and_its_status_come_back(self):
        ended = self.run_python("import sys; print('out'); print('bad', file=sys.stderr); sys.exit(3)")
        self.assertEqual((ended.status, ended.out, ended.error, ended.timed_out), (3, "out\n", "bad\n", False))

    def test_the_memory_is_the_childs_own(self):
        held = bytearray(200 << 20)
        held[::4096] = b"x" * len(held[::4096])
        self.assertLess(self.run_python("pass").memory, 100 << 20)
        self.assertGreater(self.run_python("held = b'x' * (100 << 20)").memory, 100 << 20)

    def test_a_child_is_ended_when_its_time_is_up(self):
        ended = self.run_python("import signal; signal.pause()", Limits(1, None))
        self.assertTrue(ended.timed_out)
        self.assertEqual(ended.status, -signal.SIGTERM)

    def test_a_child_that_does_not_end_is_killed_with_its_own_children(self):
        launcher_source = pathlib.Path(launcher.__file__).read_text(encoding="utf-8").replace("GRACE = 5", "GRACE = 1")
        source = ("import os, signal; signal.signal(signal.SIGTERM, signal.SIG_IGN); other = os.fork()\n"
                  "print(other, flush=True)\nsignal.pause()")
        order = json.dumps({"command": ["/usr/bin/python3", "-c", source], "seconds": 3, "memory": None})
        done = subprocess.run(["/usr/bin/python3", "-I", "-S", "-c", launcher_source, order], capture_output=True,
                              check=True, timeout=LONGEST, env=self.environment)
        ended = json.loads(done.stdout)
        self.assertEqual(ended["status"], -signal.SIGKILL)
        self.assertTrue(all(ends(line) for line in ended["out"].split() if line != "0"))
        self.assertEqual(os.listdir(self.temporary), [])

    def test_what_a_child_leaves_behind_is_ended(self):
        source = "import os, signal; other = os.fork(); print(other, flush=True) if other else signal.pause()"
        ended = self.run_python(source)
        self.assertEqual(ended.status, 0)
        self.assertTrue(ends(ended.out))

    def test_a_child_gets_no_more_memory_than_its_limit(self):
        ended = self.run_python("b'x' * (1 << 30)", Limits(60, 512 << 20))
        self.assertEqual(ended.status, 1)
        self.assertIn("MemoryError", ended.error)

    def test_a_command_that_there_is_not_is_no_crash(self):
        self.assertEqual(run_child(["/nowhere/kvr"], LIMITS).status, 127)

    def test_its_temporary_files_go(self):
        os.environ["TMPDIR"] = str(self.temporary)
        self.addCleanup(os.environ.pop, "TMPDIR")
        ended = self.run_python("import tempfile, os; d = tempfile.mkdtemp(); os.symlink('/', d + '/l'); print(d)")
        self.assertTrue(ended.out.startswith(str(self.temporary)))
        self.assertEqual(os.listdir(self.temporary), [])


class Verdicts(unittest.TestCase):
    def judge(self, command, status, out="", error="", timed_out=False):
        ended = Ended(status, timed_out, 1.0, 1, out, error)
        return commands.judge(commands.COMMANDS[command], "/a/b.stp", ended, 9)

    def test_a_certificate_tells_which_rows_differ(self):
        row = {"Name": "volume", "Verdict": "different", "Difference": 1.0, "Differences": ["STEP: 1 instead of 2"]}
        out = json.dumps({"Verdict": "different", "Rows": [row, {"Name": "faces", "Verdict": "equal"}],
                          "Absences": [], "Remarks": []})
        verdict = self.judge("certify", 1, out)
        self.assertEqual((verdict.outcome, verdict.message), ("different", "different: volume"))
        self.assertEqual(verdict.findings["Rows"][0]["Differences"], ["STEP: 1 instead of 2"])

    def test_a_check_counts_findings_by_rule(self):
        findings = [{"Rule": "K-2"}, {"Rule": "K-1"}, {"Rule": "K-2"}]
        scene = {"Errors": 1, "Warnings": 1, "Notes": 0, "Findings": findings}
        verdict = self.judge("check", 1, json.dumps({"Scenes": [scene]}))
        self.assertEqual((verdict.outcome, verdict.message), ("found", "found: K-1, K-2"))
        self.assertEqual(verdict.findings["Rules"], {"K-1": 1, "K-2": 2})
        self.assertEqual(self.judge("check", 0, json.dumps({"Scenes": [scene]})).outcome, "passed")

    def test_statistics_are_kept_without_their_lists(self):
        out = json.dumps({"Components": [{"Name": "a"}, {"Name": "b"}], "All": {"Bytes": 7}})
        self.assertEqual(self.judge("stats", 0, out).findings, {"Components": 2, "All": {"Bytes": 7}})

    def test_endings_that_are_no_answer(self):
        self.assertEqual(self.judge("check", -11).outcome, "crashed")
        self.assertIn("SIGSEGV", self.judge("check", -11).message)
        self.assertEqual(self.judge("check", -15, timed_out=True).outcome, "timed out")
        self.assertEqual(self.judge("check", -signal.SIGXCPU).outcome, "timed out")
        self.assertEqual(self.judge("check", 0, "no JSON").outcome, "failed")
        self.assertEqual(self.judge("check", 0, "{}").outcome, "failed")
        self.assertEqual(self.judge("check", 3, "{}").outcome, "failed")
        self.assertEqual(self.judge("check", 2, "", "kvr: what?\n").outcome, "bad options")

    def test_a_complaint_is_the_same_for_all_files(self):
        verdict = self.judge("convert", 1, "", "kvr: a remark\nkvr: /a/b.stp: it is cut short\n")
        self.assertEqual((verdict.outcome, verdict.message), ("failed", "it is cut short"))
        self.assertEqual(self.judge("convert", 0, "", "kvr: a remark\n").findings, {"Remarks": ["a remark"]})


class Inputs(Folder):
    def find(self, command, *named, lists=()):
        found = inputs.find_inputs(commands.COMMANDS[command], [str(name) for name in named], list(map(str, lists)))
        return [os.path.relpath(path, self.folder) for path in found]

    def test_a_folder_gives_what_the_command_takes(self):
        self.scene("deep/a.xml", "")
        (self.folder / "scenes/a.ids.xml").write_text("<Ids/>", encoding="utf-8")
        (self.folder / "scenes/b.xml").write_text("<!-- <Scene> --><House><IPart/></House>", encoding="utf-16")
        for name in ("c.STEP", "d.step.gz", "e.stpz", "f.txt"):
            (self.folder / "scenes" / name).touch()
        self.assertEqual(self.find("check", self.folder), ["scenes/b.xml", "scenes/deep/a.xml"])
        self.assertEqual(self.find("certify", self.folder), ["scenes/c.STEP", "scenes/d.step.gz", "scenes/e.stpz"])

    def test_patterns_and_lists(self):
        self.scene("a.xml", "")
        self.scene("deep/b.xml", "")
        (self.folder / "list").write_text("scenes/a.xml\n\nnowhere.xml\n", encoding="utf-8")
        self.assertEqual(self.find("check", self.folder / "**/*.xml"), ["scenes/a.xml", "scenes/deep/b.xml"])
        self.assertEqual(self.find("check", self.folder / "scenes/a.xml", lists=[self.folder / "list"]),
                         ["nowhere.xml", "scenes/a.xml"])
        for name in ("*.xml", "nowhere", ""):
            with self.assertRaises(inputs.NoInputs):
                self.find("check", self.folder / "tmp" / name)

    def test_a_sample_is_the_same_for_the_same_seed(self):
        paths = [f"/a/{number}" for number in range(100)]
        self.assertEqual(inputs.sample(paths, 10, 1), inputs.sample(list(paths), 10, 1))
        self.assertNotEqual(inputs.sample(paths, 10, 1), inputs.sample(paths, 10, 2))
        self.assertEqual(inputs.sample(paths, 1000, 1), sorted(paths))

    def test_parts_are_all_files_and_share_none(self):
        paths = sorted(f"/a/{number}" for number in range(100))
        parts = [inputs.partition(paths, "/a", part, 4) for part in (1, 2, 3, 4)]
        self.assertEqual(sorted(path for part in parts for path in part), paths)
        self.assertTrue(all(len(part) > 10 for part in parts))
        moved = inputs.partition([path.replace("/a", "/b/c") for path in paths], "/b/c", 1, 4)
        self.assertEqual(moved, [path.replace("/a", "/b/c") for path in parts[0]])


class Digests(Folder):
    def test_side_files_belong_to_the_digest(self):
        path = str(self.scene("a.xml", "pass"))
        job = Job(FAKE, "check", (), LIMITS)
        alone = work.look(job, path, "")
        self.assertEqual((len(alone.digest), alone.memory), (64, 1000))
        (self.folder / "scenes/a.xml.side").write_text("1", encoding="utf-8")
        beside = work.look(job, path, "")
        (self.folder / "scenes/a.xml.side").write_text("2", encoding="utf-8")
        self.assertEqual(len({alone.digest, beside.digest, work.look(job, path, "").digest}), 3)
        self.assertEqual(work.look(job, path + "x", "").error, "No such file or directory")

    def test_models_of_several_files(self):
        job = Job(FAKE, "certify", (), LIMITS)
        (self.folder / "a.gltf").write_text(json.dumps({"buffers": [{"uri": "a.bin"}, {"uri": "data:,x"}]}), "utf-8")
        (self.folder / "a.obj").write_text("mtllib a.mtl\n", encoding="utf-8")
        for changed, model in (("a.bin", "a.gltf"), ("a.mtl", "a.obj"), ("a.png", "a.obj")):
            path = str(self.folder / model)
            before = work.look(job, path, "").digest
            text = "map_Kd -s 1 1 1 a.png\n" if changed == "a.mtl" else "x"
            (self.folder / changed).write_text(text, encoding="utf-8")
            self.assertNotEqual(work.look(job, path, "").digest, before, changed)
        (self.folder / "b.gltf").write_text("[]", encoding="utf-8")
        self.assertEqual(work.look(job, str(self.folder / "b.gltf"), "").digest,
                         work.digest_of(str(self.folder / "b.gltf")))


class Reports(Folder):
    def test_texts_are_escaped_and_failures_lead_to_their_logs(self):
        store = Store(str(self.folder / "results.sqlite"))
        self.addCleanup(store.close)

        def add(name, result):
            store.add([Entry(f"/a/{name}", "check", "check --json", "d", "kvr 1", "9 s", result)])
        add("good", Result("passed", "", 0.3, 10))
        for number in range(25):
            add(f"bad{number}\udcff", Result("failed", "it is <b>broken</b>", 3.0, 10, log="</pre><script>"))
        add("ugly", Result("crashed", "kvr was ended by the signal SIGSEGV", 40.0, 10))
        page = report.page(store, "check")
        self.assertNotIn("<b>", page)
        self.assertNotIn("<script>", page)
        self.assertIn("it is &lt;b&gt;broken&lt;/b&gt;", page)
        self.assertIn("and 5 more", page)
        self.assertIn("bad0\\udcff", page)
        for number in range(1, 22):
            self.assertIn(f'<a href="#log-{number}">', page)
            self.assertIn(f'id="log-{number}"', page)
        self.assertNotIn('href="http', page)
        self.assertNotIn("src=", page)

    def test_times_stand_in_columns_of_powers_of_two(self):
        drawn = report.histogram({-1: 2, 2: 4})
        self.assertEqual(drawn.count("<rect"), 4)
        self.assertIn("&lt; 1/2 s", drawn)
        self.assertIn("&lt; 4 s", drawn)
        self.assertIn('height="160.0"', drawn)

    def test_another_file_is_not_taken_for_results(self):
        (self.folder / "a").write_text("x" * 5000, encoding="utf-8")
        with contextlib.closing(sqlite3.connect(self.folder / "b")) as base:
            base.execute("CREATE TABLE results (x)")
        for name in ("a", "b"):
            with self.assertRaises(sqlite3.Error):
                Store(str(self.folder / name))


class Arguments(unittest.TestCase):
    def test_bad_ones_are_refused(self):
        for words in ([], ["fly", "a"], ["check"], ["check", "a", "--to", "glb"], ["convert", "a", "--to", "glb"],
                      ["check", "a", "--timeout", "0"], ["check", "a", "--max-memory", "1 GB"],
                      ["check", "a", "--part", "3/2"], ["check", "a", "--scheduler", "tcp://a:1", "--workers", "2"]):
            with self.assertRaises(SystemExit) as ended, contextlib.redirect_stderr(io.StringIO()):
                cli.parsed(words)
            self.assertEqual(ended.exception.code, 2, words)

    def test_options_of_kvr_stand_behind_two_dashes(self):
        arguments, options = cli.parsed(["check", "a", "--max-memory", "2GiB", "b", "--", "--rule", "K-0105"])
        self.assertEqual((arguments.inputs, arguments.max_memory, options), (["a", "b"], 2 << 30, ["--rule", "K-0105"]))


class Program(Folder):
    def test_each_file_has_a_row_whatever_becomes_of_it(self):
        words = ("crash", "eat", "fail", "find", "hang", "large", "pass")
        for word in words:
            self.scene(word + ".xml", word)
        scenes = self.folder / "scenes"
        run = ("check", scenes, "--workers", 1, "--timeout", 5, "--memory", "4GB", "--max-memory", "250MB",
               "--report", self.folder / "report.html")
        status, out, error = self.batch(*run)
        self.assertEqual(status, 1, error)
        self.assertEqual([outcome for _, outcome, _ in self.rows()],
                         ["crashed", "failed", "failed", "found", "timed out", "refused", "passed"])
        self.assertEqual(out.count("\n"), 7)
        self.assertIn("it is &lt;b&gt;broken", (self.folder / "report.html").read_text(encoding="utf-8"))
        # What stands is skipped; what may fare better is not.
        (scenes / "pass.xml.side").write_text("changed", encoding="utf-8")
        self.assertIn("7 files: 1 passed, 1 refused, 5 unchanged", self.batch(*run)[1])
        (scenes / "hang.xml").unlink()
        self.assertIn("6 files: 1 crashed, 1 failed, 1 passed, 1 refused, 2 unchanged",
                      self.batch(*run, "--max-memory", "none")[1])
        self.assertEqual(os.listdir(self.temporary), [])

    def test_bad_options_and_missing_commands_end_the_run(self):
        self.scene("a.xml", "pass")
        status, _, error = self.batch("check", self.folder, "--workers", 1, "--", "--wrong")
        self.assertEqual((status, error), (2, "kvr-batch: check has no option --wrong; see kvr --help\n"))
        status, _, error = self.batch("stats", self.folder)
        self.assertEqual((status, error), (2, f"kvr-batch: {FAKE} has no command stats\n"))
        self.assertEqual(self.rows(), [])

    def test_with_kvr_itself(self):
        model = EXAMPLES / "models" / "as1-oc-214.stp"
        no_limit = ["--max-memory", "none"] if os.environ.get("KVR_SANITIZED") else []
        convert = ("convert", model, EXAMPLES / "complete" / "complete.xml", "--to", "glb", "--out",
                   self.folder / "out", "--workers", 1, *no_limit)
        status, out, error = self.batch(*convert, kvr=KVR)
        self.assertEqual((status, error), (0, ""), out)
        made = self.folder / "out/models/as1-oc-214.stp/as1-oc-214.glb"
        self.assertEqual(made.read_bytes()[:4], b"glTF")
        outputs = json.loads(self.rows("outputs")[1][0])
        self.assertEqual(outputs, {"as1-oc-214.glb": work.digest_of(str(made))})
        made.unlink()
        self.assertIn("1 passed, 1 unchanged", self.batch(*convert, kvr=KVR)[1])
        self.assertTrue(made.exists())


class Cluster(Folder):
    """A scheduler and two workers, processes of their own that speak over TCP."""

    def start(self, *words):
        process = subprocess.Popen(words, stderr=subprocess.PIPE, stdout=subprocess.DEVNULL, env=self.environment,
                                   text=True)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.wait, LONGEST)
        self.addCleanup(process.kill)
        return process

    def test_a_worker_that_is_killed_costs_no_result(self):
        count = 24
        for number in range(count):
            self.scene(f"{number}.xml", "hang-once" if number == count // 2 else "pass")
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        self.environment["KVR_FAKE_PIPE"] = str(pipe)
        # Opened for both, so that nobody waits for the other end.
        runs = os.fdopen(os.open(pipe, os.O_RDWR), "r", encoding="ascii")
        self.addCleanup(runs.close)
        scheduler = self.start("dask-scheduler", "--host", "127.0.0.1", "--port", "0", "--no-dashboard")
        address = next(line.split()[-1] for line in scheduler.stderr if "Scheduler at:" in line)
        workers = {worker.pid: worker for worker in (
            self.start("dask-worker", address, "--nthreads", "1", "--no-nanny", "--no-dashboard", "--memory-limit", "0",
                       "--resources", "memory=1e9", "--local-directory", str(self.temporary)) for _ in range(2))}
        batch = subprocess.Popen(
            [BATCH, "check", str(self.folder / "scenes"), "--scheduler", address, "--kvr", FAKE, "--results",
             str(self.folder / "results.sqlite")], stdout=subprocess.PIPE, env=self.environment, text=True)
        self.addCleanup(batch.stdout.close)
        self.addCleanup(batch.wait, LONGEST)
        self.addCleanup(batch.kill)
        word = ""
        while word != "hang-once":
            worker, child, word = runs.readline().split()
        workers[int(worker)].kill()
        out, _ = batch.communicate(timeout=LONGEST)
        self.assertEqual(batch.returncode, 0)
        self.assertIn(f"{count} files: {count} passed;", out)
        names = [os.path.basename(path) for path, outcome, _ in self.rows() if outcome == "passed"]
        self.assertEqual(sorted(names), sorted(f"{number}.xml" for number in range(count)))
        # What ran for the dead worker ended with it.
        self.assertTrue(ends(child))
        for worker in workers.values():
            worker.terminate()
            worker.wait(LONGEST)
        self.assertEqual([name for name in os.listdir(self.temporary) if name.startswith("kvr-batch")], [])


if __name__ == "__main__":
    unittest.main()
