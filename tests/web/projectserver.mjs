// SPDX-License-Identifier: MIT
//
// The real project server on a folder of its own, for the tests of its pages.
import {execFileSync, spawn} from 'node:child_process';
import {existsSync, mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {setTimeout as sleep} from 'node:timers/promises';

export class ProjectServer {
    static async start() {
        const server = new ProjectServer();
        server.program = process.env.TORVO_SERVER;
        if (!server.program) throw new Error('TORVO_SERVER names no program');
        server.folder = mkdtempSync(join(tmpdir(), 'torvo-pages-'));
        server.data = join(server.folder, 'data');
        mkdirSync(server.data);
        const portFile = join(server.folder, 'port');
        server.process = spawn(server.program,
            ['--data', server.data, '--listen', '127.0.0.1:0', '--port-file', portFile], {stdio: 'inherit'});
        for (let n = 0; n < 300 && !existsSync(portFile); n++) await sleep(100);
        server.address = `http://127.0.0.1:${readFileSync(portFile, 'utf8').trim()}`;
        return server;
    }

    async stop() {
        const ended = new Promise((resolve) => { this.process.once('exit', resolve); });
        this.process.kill();
        await ended;
        rmSync(this.folder, {recursive: true});
    }

    run(...words) {
        const input = typeof words[words.length - 1] === 'object' ? words.pop().input : '';
        execFileSync(this.program, words, {input});
    }

    addAccount(name, password) {
        this.run('account', 'add', name, '--login-name', `${name} 的名字`, '--data', this.data, {input: `${password}\n`});
    }

    // Makes a project of an account with one file in it.
    publish(owner, guid, name, record = {}) {
        const content = join(this.folder, 'content');
        mkdirSync(content, {recursive: true});
        writeFileSync(join(content, 'a.txt'), 'x'.repeat(2048));
        const file = join(this.folder, 'record.json');
        writeFileSync(file, JSON.stringify({guid, name, type: 'BIM', owner, parent: '', record}));
        this.run('publish', '--data', this.data, '--project-folder', content, '--record', file);
    }

    async post(path, body, token) {
        const reply = await fetch(`${this.address}/api/v1/${path}`, {
            method: 'POST',
            headers: {'Content-Type': 'application/json', ...(token ? {Authorization: `Bearer ${token}`} : {})},
            body: JSON.stringify(body),
        });
        if (!reply.ok) throw new Error(`${path}: ${reply.status} ${await reply.text()}`);
        return reply.json();
    }

    // The address that the program opens in the person's browser.
    async ticketAddress(path, account, password) {
        const {token} = await this.post('login', {account, password});
        const {ticket} = await this.post('tickets', {}, token);
        return `${this.address}/web/${path}?ticket=${encodeURIComponent(ticket)}`;
    }
}
