// The end of a benchmark run: node tools/bench-table.mjs build/reports/bench
// Reads what the programs left there (Google Benchmark's JSON, every repetition in it), prints each case with its median
// and spread, and last one table of ratios with the targets that this project has set itself. Times are CPU times of
// the measuring thread, so that other work on the machine disturbs them less.
import { existsSync, readFileSync } from "node:fs";
import { join } from "node:path";

const folder = process.argv[2] ?? "build/reports/bench";
const read = (name) => {
  const path = join(folder, name);
  return existsSync(path) ? JSON.parse(readFileSync(path, "utf8")) : null;
};

const NANOSECONDS = { ns: 1, us: 1e3, ms: 1e6, s: 1e9 };

/** Name of a case → the times of its repetitions in nanoseconds, ascending. */
function readTimes(reports) {
  const times = new Map();
  for (const report of reports) {
    for (const run of report?.benchmarks ?? []) {
      if (run.run_type !== "iteration") continue;
      const name = run.run_name.replace(/\/iterations:\d+$/, "");
      if (!times.has(name)) times.set(name, []);
      times.get(name).push(run.cpu_time * NANOSECONDS[run.time_unit]);
    }
  }
  for (const list of times.values()) list.sort((a, b) => a - b);
  return times;
}

const times = readTimes([read("library_bench.json"), read("simulator_bench.json")]);
const quantile = (list, share) => list[Math.min(list.length - 1, Math.floor(share * list.length))];

/** Which of a case's times the ratios are made of. */
let share = 0.5;

function time(name) {
  const list = times.get(name);
  if (!list) throw new Error(`no such case: ${name}`);
  return quantile(list, share);
}

function timeText(nanoseconds) {
  const [unit, size] = Object.entries({ s: 1e9, ms: 1e6, µs: 1e3 }).find(([, unitSize]) => nanoseconds >= unitSize) ?? [
    "ns",
    1,
  ];
  return `${(nanoseconds / size).toPrecision(3)} ${unit}`;
}

function printTable(head, rows) {
  const lines = [head, ...rows];
  const widths = head.map((_, column) => Math.max(...lines.map((line) => [...line[column]].length)));
  const print = (line) =>
    console.log(`| ${line.map((cell, i) => cell + " ".repeat(widths[i] - [...cell].length)).join(" | ")} |`);
  print(head);
  print(widths.map((width) => "-".repeat(width)));
  rows.forEach(print);
}

// ---- What is compared ----------------------------------------------------------------------------------------------

const atLeast = (target) => ({ text: `at least ${target}`, isMet: (value) => value >= target });
const atMost = (target) => ({ text: `at most ${target}`, isMet: (value) => value <= target });

const against = (target, subject, baseline) => [
  `${subject.replace("/library", "")} against ${baseline.split("/")[1]}`,
  () => time(baseline) / time(subject),
  target,
];
const trees = [
  "trivial call",
  "tick",
  "list of 100 positions",
  "list of 1000 orders",
  "flush of 1000 orders",
  "details of 1000 securities",
];

/** What, its value, its target if there is one. */
const RATIOS = [
  against(atLeast(3), "trivial call/library", "trivial call/QWebChannel"),
  against(null, "trivial call/library", "trivial call/QJsonDocument text"),
  ...[1, 10, 50, 500].map((views) =>
    against(views === 50 ? atLeast(100) : null, `tick/library/views:${views}`, `tick/QWebChannel/views:${views}`),
  ),
  against(null, "tick/library/views:1", "tick/QJsonDocument text"),
  [
    "tick: nanoseconds for each further view",
    () => (time("tick/library/views:50") - time("tick/library/views:1")) / 49,
    atMost(100),
  ],
  [
    "tick that none of 50 views wants / tick that all want",
    () => time("tick/library, nobody wants it/views:50") / time("tick/library/views:50"),
    atMost(0.1),
  ],
  against(atLeast(8), "flush/library/orders:1000", "flush of 1000 orders/QJsonDocument text"),
  against(null, "intake and flush/library/orders:1000", "flush of 1000 orders/QJsonDocument text"),
  [
    "order event with 100,000 ids pending / with 10",
    () => time("order event/library/pending:100000") / time("order event/library/pending:10"),
    atMost(1.3),
  ],
  against(atLeast(5), "list of 1000 orders/library", "list of 1000 orders/QWebChannel"),
  against(null, "list of 1000 orders/library", "list of 1000 orders/QJsonDocument text"),
  [
    "cost of a record in a list of 10,000 orders / of 100",
    () => time("list of 10000 orders/library") / 100 / time("list of 100 orders/library"),
    atMost(1.2),
  ],
  against(null, "list of 100 positions/library", "list of 100 positions/QWebChannel"),
  against(null, "details of 1000 securities/library", "details of 1000 securities/QWebChannel"),
  against(null, "details of 50000 securities/library", "details of 50000 securities/QWebChannel"),
  ...trees.map((tree) => against(atLeast(1), `${tree}/writer text`, `${tree}/RapidJSON text`)),
  ...["trivial call", "list of 1000 orders"].map((call) => [
    `${call} / the text alone by the writer`,
    () => time(`${call}/library`) / time(`${call}/writer text`),
    null,
  ]),
  [
    "list of 1 order with debug lines / without",
    () => time("list of 1 order/library, debug lines on") / time("list of 1 order/library"),
    null,
  ],
  against(null, "order list, whole/library/orders:100", "order list, whole/host and QJsonDocument text/orders:100"),
  against(null, "trivial call, whole/library", "trivial call, whole/host and QJsonDocument text"),
  [
    "cells of an order by the simulator / the same cells copied",
    () => time("cells of an order/host") / time("cells of an order/copied"),
    atMost(3),
  ],
  [
    "cost of an order in a list of 5000 that is placed / of 50",
    () => time("orders placed/host/orders:5000") / 100 / time("orders placed/host/orders:50"),
    atMost(1.3),
  ],
  [
    "quote in the 120th minute of a day / in the first",
    () => time("quote/host/minute:120") / time("quote/host/minute:1"),
    atMost(1.5),
  ],
];

// ---- What is printed -----------------------------------------------------------------------------------------------

printTable(
  ["case", "median", "half of the runs within"],
  [...times].map(([name, list]) => [
    name,
    timeText(quantile(list, 0.5)),
    `${timeText(quantile(list, 0.25))} to ${timeText(quantile(list, 0.75))}`,
  ]),
);

const counted = read("library_bench.json")?.benchmarks.find((run) => run["resident bytes for each view"]);
if (counted)
  console.log(
    `\nmemory of a view's two dispatchers: ${(counted["resident bytes for each view"] / 1024).toFixed(0)} KiB resident`,
  );

const busy = read("busy_market.json");
if (busy) {
  console.log("\nbusy market, ten seconds:");
  for (const [name, value] of Object.entries(busy))
    console.log(`  ${name}: ${value.toPrecision ? Number(value.toPrecision(4)) : value}`);
}

// Where other work makes the machine slow for a while, the medians of two cases may lie on both sides of it; the fastest
// quarters do not.
function ratioAt(value, wantedShare) {
  share = wantedShare;
  return value();
}

console.log();
printTable(
  ["compared (times faster, or a quotient)", "ratio of medians", "of fastest quarters", "target", ""],
  RATIOS.map(([what, value, target]) => {
    const ratio = ratioAt(value, 0.5);
    const verdict = target ? (target.isMet(ratio) ? "met" : "MISSED") : "";
    return [what, ratio.toPrecision(3), ratioAt(value, 0.25).toPrecision(3), target?.text ?? "", verdict];
  }),
);
