// strict.mjs as a person runs it: what it says and how it ends, on exports of the samples by the command-line program.
//
//   PROGRAM    the command-line program    (build/linux/exportifc)

import { spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { Runner } from './lib/runner.mjs';

const here = dirname(fileURLToPath(import.meta.url));
const top = join(here, '..', '..');
const program = resolve(process.env.PROGRAM ?? join(top, 'build', 'linux', 'exportifc'));
if (!existsSync(program)) {
  console.error(`${program} is not there: build first, or set PROGRAM`);
  process.exit(2);
}
const folder = mkdtempSync(join(tmpdir(), 'exportifc-strict-'));
process.on('exit', () => rmSync(folder, { recursive: true, force: true }));

const run = new Runner('strict program');

function strict(...args) {
  const { status, stdout, stderr } = spawnSync('node', [join(here, 'strict.mjs'), ...args], { encoding: 'utf8', timeout: 60000 });
  return { status, said: stdout + stderr };
}

function says(name, args, status, pattern) {
  const result = strict(...args);
  run.check(`${name}: ends with ${status}`, result.status === status, `${result.status}: ${result.said}`);
  run.check(`${name}: says ${pattern}`, pattern.test(result.said), result.said);
  return result;
}

function exported(sample) {
  const path = join(folder, `${sample}.ifc`);
  const { status, stderr } = spawnSync(program, ['export', join(top, 'samples', `${sample}.json`), '-o', path], { encoding: 'utf8' });
  run.check(`${sample} is exported`, status === 0, stderr);
  return path;
}

const [galpao, familias] = [exported('galpao'), exported('familias')];
says('a model with assemblies', ['--own', galpao], 0, /^.*galpao\.ifc:\d+:.*#111 places #113, #\d+, #\d+ \(expected: .*\)\n.*galpao\.ifc: no fault but the expected one\n$/);
says('a model without', ['--own', familias], 0, /^.*familias\.ifc: no fault\n$/);
says('both', [galpao, familias], 0, /expected one\n.*: no fault\n$/);

says('two other products in one place', [join(here, 'broken', 'shared-placement.ifc')], 1, /^.*shared-placement\.ifc:\d+:(?!.*expected).*\n$/);

// A bar that shares with storey and assemblies is none of what is expected.
const text = readFileSync(galpao, 'latin1');
const moved = join(folder, 'moved.ifc');
writeFileSync(moved, text.replace(/^(#\d+= IFCBEAM\(.*, \$,)#\d+(, #\d+, '[^']*'\);)/m, '$1#111$2'), 'latin1');
says('a bar placed with the storey', [moved], 1, /#111 places #113, (?!.*expected).*\n$/);

const cut = join(folder, 'cut.ifc');
writeFileSync(cut, text.slice(0, text.length / 2), 'latin1');
says('one good file, one cut', [galpao, cut], 1, /no fault but the expected one\n.*cut\.ifc:\d+:/);

says('no file', [], 2, /^usage: /);
says('a file that is not there', [join(folder, 'nowhere.ifc')], 2, /^strict\.mjs: .*nowhere\.ifc.*\n$/);
run.finish();
