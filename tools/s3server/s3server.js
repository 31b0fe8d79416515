// A local S3 server that verifies AWS Signature Version 4, for the tests and benchmarks of the
// Cloudflare R2 uploads. It serves one bucket and accepts one key pair, both given on the command
// line, and prints "ready <address>:<port>" once it listens. SIGTERM or SIGINT stops it.
//
//   node s3server.js ADDRESS PORT DIRECTORY BUCKET ACCESS_KEY_ID SECRET_ACCESS_KEY
'use strict';

const S3rver = require('@20minutes/s3rver');
const AWSAccount = require('@20minutes/s3rver/lib/models/account');

const [address, port, directory, bucket, accessKeyID, secretAccessKey] = process.argv.slice(2);
if (!secretAccessKey) {
  console.error('usage: s3server.js ADDRESS PORT DIRECTORY BUCKET ACCESS_KEY_ID SECRET_ACCESS_KEY');
  process.exit(2);
}

// Only the caller's key pair opens the bucket: the library's built-in pair is withdrawn.
AWSAccount.DUMMY_ACCOUNT.revokeAccessKey('S3RVER');
AWSAccount.DUMMY_ACCOUNT.createKeyPair(accessKeyID, secretAccessKey);

const server = new S3rver({
  address,
  port: Number(port),
  silent: true,
  directory,
  configureBuckets: [{ name: bucket, configs: [] }],
});

server.run().then(
  (bound) => console.log(`ready ${bound.address}:${bound.port}`),
  (error) => {
    console.error(`s3server: ${error.message}`);
    process.exit(1);
  },
);

// Objects are on disk once answered, so a stop needn't wait for idle keep-alive connections.
for (const signal of ['SIGTERM', 'SIGINT']) {
  process.on(signal, () => process.exit(0));
}
