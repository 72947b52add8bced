// SPDX-License-Identifier: MIT
//
// The real project server on a folder of its own, for the tests of its pages.
import {execFileSync, spawn} from 'node:child_process';
import {createHash, randomUUID} from 'node:crypto';
import {existsSync, mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {setTimeout as sleep} from 'node:timers/promises';

export class ProjectServer {
    // `options` are those of the program.
    static async start(...options) {
        const server = new ProjectServer();
        server.program = process.env.TORVO_SERVER;
        if (!server.program) throw new Error('TORVO_SERVER names no program');
        server.folder = mkdtempSync(join(tmpdir(), 'torvo-pages-'));
        server.data = join(server.folder, 'data');
        mkdirSync(server.data);
        const portFile = join(server.folder, 'port');
        server.process = spawn(server.program,
            ['--data', server.data, '--listen', '127.0.0.1:0', '--port-file', portFile, ...options], {stdio: 'inherit'});
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
        this.publishFiles({guid, name, type: 'BIM', owner, parent: '', record}, {'a.txt': 'x'.repeat(2048)});
    }

    // Makes a model of a project; the files are bytes by names.
    publishModel(owner, parent, guid, name, files) {
        this.publishFiles({guid, name, type: 'MODEL', owner, parent}, files);
    }

    publishFiles(entry, files) {
        const content = mkdtempSync(join(this.folder, 'content-'));
        for (const [name, bytes] of Object.entries(files)) writeFileSync(join(content, name), bytes);
        const record = join(this.folder, 'record.json');
        writeFileSync(record, JSON.stringify(entry));
        this.run('publish', '--data', this.data, '--project-folder', content, '--record', record);
    }

    // Sends an archive, and orders its conversion as the program does; the result is the job's id.
    async orderConversion(account, password, project, name, bytes = 'an archive') {
        const {token} = await this.post('login', {account, password});
        const archives = `projects/${project}/archives`;
        const path = `${project}/${randomUUID()}/a.kyv`;
        const md5 = createHash('md5').update(bytes).digest('hex');
        const {archive} = await this.post(archives, {path, size: bytes.length}, token);
        const sent = await fetch(`${this.address}/api/v1/${archives}/${archive}/bytes/0`,
            {method: 'PUT', headers: {Authorization: `Bearer ${token}`}, body: bytes});
        if (!sent.ok) throw new Error(`the archive was refused: ${sent.status}`);
        await this.post(`${archives}/${archive}/finish`, {md5}, token);
        const job = await this.post(`projects/${project}/conversions`, {projectId: project, path, name, md5, oldModelId: '',
            status: 6, origin: '1', type: '1', option: '3'}, token);
        return job.id;
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
