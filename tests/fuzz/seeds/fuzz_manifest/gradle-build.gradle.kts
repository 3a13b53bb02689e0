77plugins {
    id("com.android.application") version "8.2.2"
    kotlin("android") version "1.9.22"
}
val ktor_version = "2.3.7"
dependencies {
    implementation("io.ktor:ktor-client-core:$ktor_version")
    implementation("com.squareup.okio:okio:3.8.0")
    implementation(platform("androidx.compose:compose-bom:2024.02.00"))
    // implementation("gone:gone:1.0")
    implementation(project(":core"))
}
org.jetbrains.kotlin.android:org.jetbrains.kotlin.android.gradle.plugin:1.9.23=classpath
