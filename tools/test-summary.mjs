// Adds up test runs: node tools/test-summary.mjs build/reports/PRESET…
// Each folder holds `suites.tsv` (label, JUnit report, exit status of the runner, seconds), the reports that it names and
// `pattern`, the filter of the run. Prints a line per suite, the names of what failed and, last, the total.
// A test that passed only when it was repeated counts as passed, and is named too.
// Exits with 1 unless every run ran tests and none failed.
import { existsSync, readFileSync } from "node:fs";
import { basename, join } from "node:path";

const ENTITIES = { lt: "<", gt: ">", quot: '"', apos: "'", amp: "&" };
const unescape = (text) => text.replace(/&(lt|gt|quot|apos|amp);/g, (_, name) => ENTITIES[name]);

/** The test cases of a JUnit report, as all three runners write it. */
function readReport(path) {
  if (!existsSync(path)) return [];
  const xml = readFileSync(path, "utf8").replace(/<!\[CDATA\[[\s\S]*?\]\]>/g, "");
  const cases = xml.matchAll(/<testcase((?:\s+[\w:-]+="[^"]*")*)\s*(?:\/>|>([\s\S]*?)<\/testcase>)/g);
  return Array.from(cases, ([, attributes, body = ""]) => {
    const attribute = (key) => unescape(attributes.match(new RegExp(`\\s${key}="([^"]*)"`))?.[1] ?? "");
    const group = attribute("classname");
    const name = attribute("name");
    return {
      name: group && group !== name ? `${group}: ${name}` : name,
      outcome: outcomeOf(attribute("status"), body),
      isRepeated: /<flaky(Failure|Error)\b/.test(body),
    };
  });
}

function outcomeOf(status, body) {
  if (/<(failure|error)\b/.test(body) || status === "fail") return "failed";
  if (!/<skipped\b/.test(body)) return "passed";
  // CTest also calls a test skipped whose program it could not start.
  return status === "notrun" && !/<skipped message="(SKIP_|Disabled)/.test(body) ? "failed" : "skipped";
}

function summarizeSuite(line, folder, pattern) {
  const [label, report, status, seconds] = line.split("\t");
  const cases = readReport(join(folder, report));
  const names = (outcome) => cases.filter((test) => test.outcome === outcome).map((test) => test.name);
  const failures = names("failed");
  const passed = names("passed").length;
  // A runner reports the tests that a filter leaves out as skipped.
  const skipped = pattern ? 0 : names("skipped").length;
  if (status !== "0" && failures.length === 0) failures.push(`(the runner failed with status ${status})`);
  if (!pattern && cases.length === 0 && failures.length === 0) failures.push("(no test ran)");
  const repeated = cases.filter((test) => test.isRepeated).map((test) => test.name);
  return { label, seconds, passed, failures, skipped, repeated };
}

const counts = ({ passed, failed, skipped, repeated }) =>
  `${passed} passed, ${failed} failed${skipped ? `, ${skipped} skipped` : ""}` +
  (repeated ? `; ${repeated} of them passed only the second time` : "");

const total = { passed: 0, failed: 0, skipped: 0, repeated: 0 };
const folders = process.argv.slice(2);
for (const folder of folders) {
  const pattern = readFileSync(join(folder, "pattern"), "utf8");
  const lines = readFileSync(join(folder, "suites.tsv"), "utf8").trimEnd().split("\n");
  const suites = lines.map((line) => summarizeSuite(line, folder, pattern));
  console.log(`Tests, ${basename(folder)}${pattern ? `, matching ${pattern}` : ""}`);
  for (const { label, seconds, passed, failures, skipped, repeated } of suites) {
    const suite = { passed, failed: failures.length, skipped, repeated: repeated.length };
    console.log(`  ${label.padEnd(9)} ${counts(suite)}  (${seconds} s)`);
    for (const name of failures) console.log(`    FAILED ${name}`);
    for (const name of repeated) console.log(`    PASSED ONLY THE SECOND TIME ${name}`);
    total.repeated += suite.repeated;
    total.passed += passed;
    total.failed += failures.length;
    total.skipped += skipped;
  }
  if (suites.every((suite) => suite.passed + suite.failures.length === 0)) {
    console.log(pattern ? `  no test matches ${pattern}` : "  no test ran");
    process.exitCode = 1;
  }
}
if (total.failed) process.exitCode = 1;
console.log(counts(total));
