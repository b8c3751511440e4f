// Counts what passes and what fails, prints the failures as they come, and ends with the line the test run adds up.

export class Runner {
  constructor(title) {
    this.title = title;
    this.passed = 0;
    this.failed = 0;
  }

  check(name, ok, detail = '') {
    if (ok) {
      this.passed += 1;
    } else {
      this.failed += 1;
      console.log(`FAIL ${this.title}: ${name}${detail ? `: ${detail}` : ''}`);
    }
    return ok;
  }

  finish() {
    console.log(`${this.title}: ${this.passed} passed, ${this.failed} failed`);
    process.exitCode = this.failed > 0 ? 1 : 0;
  }
}
