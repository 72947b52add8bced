// SPDX-License-Identifier: MIT
//
// The thread that ends the reader when it takes too long: the reader itself has no time to look at a clock.
import fs from 'node:fs';
import { workerData } from 'node:worker_threads';

if (Atomics.wait(workerData.isRead, 0, 0, workerData.milliseconds) === 'timed-out') {
    fs.writeSync(1, JSON.stringify({ error: 'it is damaged (its end is never reached)' }) + '\n');
    process.kill(process.pid, 'SIGKILL');
}
