// Serves databases in memory on the loopback. Usage: node server.js [PORT]; prints the port when it is ready.
'use strict';

const PouchDB = require('pouchdb-core')
    .plugin(require('pouchdb-adapter-memory'))
    .plugin(require('pouchdb-mapreduce'));
const databases = require('express-pouchdb')(PouchDB.defaults({ adapter: 'memory' }), {
    mode: 'minimumForPouchDB',
    inMemoryConfig: true,
});

const app = require('express')();
app.use(databases);
const server = app.listen(Number(process.argv[2] || 0), '127.0.0.1', () => {
    console.log(server.address().port);
});
