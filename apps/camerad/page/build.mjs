// Builds the page.
//
//     node build.mjs OUTDIR     writes index.html, app.js, app.css and icon.svg to OUTDIR
//     node build.mjs --tests    bundles the unit tests and runs them with Node's own test runner
//
// The page refers to nothing but these files, and nothing in them is inline: it is served with a content security policy
// that allows neither.
import { build } from 'esbuild';
import { spawnSync } from 'node:child_process';
import { copyFileSync, mkdirSync, mkdtempSync, readdirSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';

const here = dirname(fileURLToPath(import.meta.url));
const kTarget = ['chrome100', 'firefox100', 'safari15.4'];

async function buildPage(outFolder) {
  mkdirSync(outFolder, { recursive: true });
  await build({
    absWorkingDir: here,
    entryPoints: { app: 'src/main.tsx' },
    outdir: outFolder,
    bundle: true,
    minify: true,
    sourcemap: false,
    legalComments: 'none',
    charset: 'utf8',
    format: 'iife',
    target: kTarget,
    jsx: 'automatic',
    jsxImportSource: 'preact',
    logLevel: 'warning',
  });
  for (const name of ['index.html', 'icon.svg']) {
    copyFileSync(join(here, 'src', name), join(outFolder, name));
  }
}

// Each test file becomes a program of its own, so that none depends on another. A file name that begins with one of the
// words behind --tests is run; without words all are.
async function runTests(words) {
  const folder = join(here, 'test');
  const names = readdirSync(folder)
    .filter((name) => /\.test\.tsx?$/.test(name))
    .filter((name) => 0 === words.length || words.some((word) => name.startsWith(word)));
  if (0 === names.length) {
    console.error('No test file has such a name.');
    return 1;
  }
  const outFolder = mkdtempSync(join(tmpdir(), 'camerad-page-test-'));
  try {
    await build({
      absWorkingDir: here,
      entryPoints: names.map((name) => join('test', name)),
      outdir: outFolder,
      outExtension: { '.js': '.mjs' },
      bundle: true,
      sourcemap: 'inline',
      format: 'esm',
      platform: 'node',
      target: 'node18',
      jsx: 'automatic',
      jsxImportSource: 'preact',
      logLevel: 'warning',
    });
    const programs = readdirSync(outFolder).map((name) => join(outFolder, name));
    const run = spawnSync(process.execPath, ['--enable-source-maps', '--test', ...programs], { stdio: 'inherit' });
    return run.status ?? 1;
  } finally {
    rmSync(outFolder, { recursive: true, force: true });
  }
}

const words = process.argv.slice(2);
if ('--tests' === words[0]) {
  process.exitCode = await runTests(words.slice(1));
} else if (1 === words.length && !words[0].startsWith('-')) {
  await buildPage(resolve(words[0]));
} else {
  console.error('usage: node build.mjs OUTDIR\n       node build.mjs --tests [BEGINNING OF A FILE NAME]...');
  process.exitCode = 2;
}
