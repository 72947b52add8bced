// SPDX-License-Identifier: MIT
//
// What keeps a damaged or hostile file from holding the reader up for ever.
import { Worker } from 'node:worker_threads';
import * as cad from './acad-ts.mjs';

// The library looks a little ahead of what it reads.
const bytesAhead = 16;
const leastMilliseconds = 15_000;
const millisecondsPerMebibyte = 30_000;

/// The library takes what lies behind the end of a file for zeros, and counts that come out of it for counts: a number of
/// a billion entities that are not there is read through to its end. Reading there is an error from now on.
export function refuseToReadBehindTheEnd() {
    const { prototype } = cad.DwgStreamReaderBase;
    for (const name of ['readByte', 'advanceByte']) {
        const own = prototype[name];
        prototype[name] = function readInside() {
            if (this._position >= this._stream.length + bytesAhead)
                throw new RangeError('it ends before its end');
            return own.call(this);
        };
    }
}

/// Ends this process when `size` bytes take longer to read than any file of that size does: some damage runs in a circle.
/// Gives a function that calls it off.
export function watchReading(size) {
    const isRead = new Int32Array(new SharedArrayBuffer(4));
    const milliseconds = leastMilliseconds + (millisecondsPerMebibyte * size) / (1 << 20);
    const watch = new Worker(new URL('./dwgwatch.mjs', import.meta.url), { workerData: { isRead, milliseconds } });
    watch.unref();
    return () => {
        Atomics.store(isRead, 0, 1);
        Atomics.notify(isRead, 0);
    };
}
